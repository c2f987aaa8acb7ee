#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "CsvLine.hpp"

namespace {

using Report::CsvLine;

template <typename Field>
std::string fieldOf(const Field& field) {
    CsvLine line;
    line.add(field);
    const std::string_view text = line.end();
    return std::string(text.substr(0, text.size() - 2));
}

TEST(CsvLineTest, SeparatesFieldsByCommasAndEndsWithCarriageReturnAndLineFeed) {
    CsvLine line;
    line.add(std::string_view("bts-17"));
    line.addUnknown();
    line.add(std::int64_t{5});
    EXPECT_EQ(line.end(), "bts-17,,5\r\n");

    line.addUnknown();
    line.add(std::string_view("next"));
    EXPECT_EQ(line.end(), ",next\r\n");
}

TEST(CsvLineTest, QuotesOnlyTextsThatNeedIt) {
    using namespace std::string_view_literals;
    const struct {
        std::string_view text, field;
    } cases[] = {{"plain text"sv, "plain text"sv},
                 {""sv, R"("")"sv},
                 {"a,b"sv, R"("a,b")"sv},
                 {R"(say "no")"sv, R"("say ""no""")"sv},
                 {"two\nlines"sv, "\"two\nlines\""sv},
                 {"\r"sv, "\"\r\""sv},
                 {R"(")"sv, R"("""")"sv},
                 {"\0 \t\x1b\x7f"sv, "\0 \t\x1b\x7f"sv},
                 {" gr\u00fc\u00dfe "sv, " gr\u00fc\u00dfe "sv}};
    for (const auto& [text, field] : cases) {
        EXPECT_EQ(fieldOf(text), field);
    }
}

TEST(CsvLineTest, WritesIntegersUpToTheirLimits) {
    EXPECT_EQ(fieldOf(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(fieldOf(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(CsvLineTest, WritesDecimalsThatAreReadBackAsTheSameNumber) {
    const struct {
        double number;
        std::string_view field;
    } cases[] = {{0.25, "0.25"},
                 {0.1 + 0.2, "0.30000000000000004"},
                 {3.0, "3.0"},
                 {-0.0, "-0.0"},
                 {1e300, "1e+300"},
                 {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
                 {std::numeric_limits<double>::denorm_min(), "5e-324"}};
    for (const auto& [number, field] : cases) {
        EXPECT_EQ(fieldOf(number), field);
        double back = 0;
        std::from_chars(field.data(), field.data() + field.size(), back);
        EXPECT_EQ(back, number);
    }
}

}  // namespace
