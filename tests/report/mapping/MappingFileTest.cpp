#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "MappingFile.hpp"

namespace {

const std::string preamble =
    "korvel-report map 1\n"
    "# Originals and their replacements. Keep this file: korvel-report restore needs it.\n"
    "# It is as secret as the original package.\n";

TEST(MappingFileTest, KeepsAMapping) {
    const std::string text = preamble +
                             "ip4 10.0.0.1 17.4.6.2\n"
                             "ip4 17.4.6.2 19.3.3.8\n"
                             "ip6 fe80:0:0:0:211:22ff:fe33:4455 ab41:0:0:0:603:91ff:fe18:7260\n"
                             "mac 00:11:22:33:44:55 40:03:91:18:72:60\n"
                             "eui64 00:11:22:ff:fe:33:44:55 40:03:91:ff:fe:18:72:60\n"
                             "name bts-17 dzq-52\n"
                             "name m%c3%bcller z%c3%a0xyvw\n";
    EXPECT_EQ(Report::writeMapping(Report::parseMapping(text)), text);
    EXPECT_EQ(Report::writeMapping(Report::Mapping()), preamble);
}

TEST(MappingFileTest, LooksUpBothDirections) {
    const Report::Mapping mapping = Report::parseMapping(preamble + "name bob dqz\nname dqz eyx\n");
    EXPECT_EQ(mapping.replacements().names.at("bob"), "dqz");
    EXPECT_EQ(mapping.originals().names.at("dqz"), "bob");
    EXPECT_EQ(mapping.originals().names.at("eyx"), "dqz");
    EXPECT_FALSE(mapping.isReplacement("bob"));
}

std::string errorOf(const std::string& text) {
    try {
        static_cast<void>(Report::parseMapping(text));
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "no error";
}

TEST(MappingFileTest, RefusesATextThatIsNoMapping) {
    const std::string malformed = "line 4: not a kind, an original and its replacement";
    const std::string contradiction = "line 5: contradicts an earlier line";
    const struct {
        std::string text;
        std::string error;
    } cases[] = {
        {"", "line 1: not a map of korvel-report"},
        {"korvel-report map 2\n", "line 1: a map of another version: korvel-report map 2"},
        {preamble + "ip5 10.0.0.1 17.4.6.2\n", malformed},
        {preamble + "ip4 10.0.0.1\n", malformed},
        {preamble + "ip4 10.0.0.1 17.4.6.2 x\n", malformed},
        {preamble + "ip4 10.0.0.1 10.0.0.1\n", malformed},
        {preamble + "ip4 10.0.0.1 fe80::1\n", malformed},
        {preamble + "ip4 10.0.0.1 127.0.0.1\n", malformed},
        {preamble + "ip6 ::ffff:10.0.0.1 fe80::1\n", malformed},
        {preamble + "mac 00:11:22:33:44 40:03:91:18:72:60\n", malformed},
        {preamble + "name bob Dqz\n", malformed},
        {preamble + "name bob dqzx\n", malformed},
        {preamble + "name b%c3%b dqzxy\n", malformed},
        {preamble + "name -- __\n", malformed},
        {preamble + "ip4 10.0.0.1 17.4.6.2\nip4 10.0.0.2 17.4.6.2\n", contradiction},
        {preamble + "name bob dqz\nname bob eyx\n", contradiction},
    };
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(errorOf(text), error) << text;
    }
}

}  // namespace
