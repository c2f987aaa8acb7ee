#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>

#include "ValueLine.hpp"

namespace ReportTest {
namespace {

using Report::Number;

TEST(ValueLineTest, HasANameASeparatorAndANumberToTheEndOfTheLine) {
    const struct {
        std::string_view line;
        std::string_view name;
        std::string_view number;
    } cases[] = {
        {"  allocations                               8072", "allocations", "8072"},
        {"busy, per mille  3027", "busy, per mille", "3027"},
        {"a  1", "a", "1"},
        {"a\t\t1", "a", "1"},
        {"a \t1", "a", "1"},
        {"a:1", "a", "1"},
        {"a: 1", "a", "1"},
        {"a : 1", "a", "1"},
        {"a=1", "a", "1"},
        {"a = 1", "a", "1"},
        {"a: b: 1", "a: b", "1"},
        {"a  5  1", "a  5", "1"},
        {"\ta  1 \t \r", "a", "1"},
        {"a  1\r\r", "a", "1"},
        {"a: -1", "a", "-1"},
        {"a: +1", "a", "+1"},
        {"a: 0x1F", "a", "0x1F"},
        {"a: 0XaB", "a", "0XaB"},
        {"a: 1.5", "a", "1.5"},
        {"a: 007", "a", "007"},
        {"7: 8", "7", "8"},
        {"\xff: 8", "\xff", "8"},
    };
    for (const auto& [line, name, number] : cases) {
        SCOPED_TRACE(line);
        const auto value = Report::parseValueLine(line);
        ASSERT_TRUE(value);
        EXPECT_EQ(value->name, name);
        EXPECT_EQ(value->number, number);
    }
}

TEST(ValueLineTest, IsNoneIfAnythingElseIsInTheLine) {
    for (const std::string_view line :
         {"",           " ",      "1",        "  1",         "a",      "a 1",    "a\t1",
          "a\r1",       ": 1",    "= 1",      "  : 1",       "a: 1 b", "a: 1e5", "a: 1.",
          "a: .5",      "a: 0x",  "a: 0xG",   "a: 1,5",      "a: --1", "a: 1-2", "a: 1.2.3",
          "a: 12kB",    "a: 1 2", "iwf: CPU", "eth0 port 1", "a: 1\v", "a: - 1", "a: 0x1.5",
          "a: \xd9\xa3"}) {
        EXPECT_FALSE(Report::parseValueLine(line)) << line;
    }
}

TEST(NumberTest, IsExactUpToSixtyFourBits) {
    const struct {
        std::string_view text;
        Number number;
    } cases[] = {
        {"0", std::int64_t{0}},
        {"-0", std::int64_t{0}},
        {"+12", std::int64_t{12}},
        {"-12", std::int64_t{-12}},
        {"010", std::int64_t{10}},
        {"0x10", std::int64_t{16}},
        {"-0x10", std::int64_t{-16}},
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"9223372036854775808", std::uint64_t{9223372036854775808U}},
        {"18446744073709551615", std::numeric_limits<std::uint64_t>::max()},
        {"0xffffffffffffffff", std::numeric_limits<std::uint64_t>::max()},
        {"18446744073709551616", std::monostate()},
        {"-9223372036854775809", std::monostate()},
        {"0x10000000000000000", std::monostate()},
        {"1.5", 1.5},
        {"-0.25", -0.25},
        {"+3.0", 3.0},
        {"00.10", 0.1},
    };
    for (const auto& [text, number] : cases) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(Report::isNumber(text));
        EXPECT_EQ(Report::numberOf(text), number);
    }
    EXPECT_EQ(Report::numberOf(std::string(400, '9') + ".5"), Number());
}

}  // namespace
}  // namespace ReportTest
