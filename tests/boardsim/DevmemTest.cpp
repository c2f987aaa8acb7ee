// The board's command that reads and writes registers.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Process.hpp"
#include "TestFiles.hpp"

namespace {

using Words = std::vector<std::string>;

Outcome devmem(Words arguments) {
    arguments.insert(arguments.begin(), "devmem");
    return run(arguments);
}

Outcome success(const std::string& out = {}) {
    return {.status = 0, .out = out, .err = ""};
}

Outcome failure(const std::string& err) {
    return {.status = 1, .out = "", .err = err};
}

}  // namespace

TEST(DevmemTest, ReadsWhatWasWritten) {
    EXPECT_EQ(devmem({"0x02090110", "32", "0x12345678"}), success());

    EXPECT_EQ(devmem({"0x02090110", "32"}), success("0x12345678\n"));
    EXPECT_EQ(devmem({"0x02090110"}), success("0x12345678\n"));
}

TEST(DevmemTest, ReadsZeroWhereNothingWasWritten) {
    EXPECT_EQ(devmem({"0x02090510"}), success("0x00000000\n"));
    EXPECT_EQ(devmem({"0x80000000"}), success("0x00000000\n"));
    EXPECT_EQ(devmem({"0xfffffffc"}), success("0x00000000\n"));
}

TEST(DevmemTest, AccessesTheBytesOfARegisterLowestFirst) {
    devmem({"0x02090110", "32", "0x12345678"});

    EXPECT_EQ(devmem({"0x02090110", "8"}), success("0x78\n"));
    EXPECT_EQ(devmem({"0x02090112", "16"}), success("0x1234\n"));
    devmem({"0x02090111", "8", "255"});
    EXPECT_EQ(devmem({"0x02090110"}), success("0x1234FF78\n"));
}

TEST(DevmemTest, RecordsEveryAccess) {
    devmem({"0x02090110", "32", "0"});
    devmem({"34144528"});

    EXPECT_EQ(linesOfFile("/run/boardsim/received/devmem"),
              (Words{"devmem 0x02090110 32 0", "devmem 34144528"}));
}

TEST(DevmemTest, RefusesAnAddressOutsideTheBoard) {
    EXPECT_EQ(devmem({"0"}), failure("devmem: nothing at 0\n"));
    EXPECT_EQ(devmem({"0x020a0000", "32", "1"}), failure("devmem: nothing at 0x020a0000\n"));
}

TEST(DevmemTest, RefusesACommandLineThatMakesNoSense) {
    for (const Words& arguments : std::vector<Words>{{},
                                                     {"here"},
                                                     {"0x02090110 "},
                                                     {"-1"},
                                                     {"0x100000000"},
                                                     {"0x02090110", "64"},
                                                     {"0x02090111", "32"},
                                                     {"0x02090110", "32", "one"},
                                                     {"0x02090110", "32", "1", "2"}}) {
        EXPECT_EQ(devmem(arguments), failure("usage: devmem ADDRESS [WIDTH [VALUE]]\n"));
    }
}
