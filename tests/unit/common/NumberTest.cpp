#include <gtest/gtest.h>

#include "Number.hpp"

using Korvel::NumberError;
using Korvel::parseNumber;

namespace {

constexpr int untouched = 4711;

TEST(ParseNumber, ReadsADecimalIntegerAtTheStart) {
    const struct {
        std::string text;
        int value;
    } cases[] = {
        {"0", 0},
        {"7", 7},
        {"+7", 7},
        {"-7", -7},
        {" \t\n7", 7},
        {"7 and more", 7},
        {"7x", 7},
        {"010", 10},
        {"0x10", 0},
        {"2147483647", 2147483647},
        {"-2147483648", -2147483647 - 1},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        int value = untouched;
        EXPECT_EQ(parseNumber(text, value), NumberError::none);
        EXPECT_EQ(value, expected);
    }
}

TEST(ParseNumber, FindsNoDigits) {
    for (const std::string text : {"", " ", "x7", "-", "+-7", "- 7"}) {
        SCOPED_TRACE(text);
        int value = untouched;
        EXPECT_EQ(parseNumber(text, value), NumberError::noDigits);
        EXPECT_EQ(value, untouched);
    }
}

TEST(ParseNumber, RefusesWhatDoesNotFit32Bits) {
    for (const std::string text : {"2147483648", "-2147483649", "4294967296", "9223372036854775808",
                                   "-9223372036854775809", "99999999999999999999999999 lamps"}) {
        SCOPED_TRACE(text);
        int value = untouched;
        EXPECT_EQ(parseNumber(text, value), NumberError::outOfRange);
        EXPECT_EQ(value, untouched);
    }
}

TEST(ParseNumber, StopsAtAZeroByte) {
    int value = untouched;

    EXPECT_EQ(parseNumber(std::string("12\0003", 4), value), NumberError::none);
    EXPECT_EQ(value, 12);
}

}  // namespace
