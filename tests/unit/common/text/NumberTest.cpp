#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Number.hpp"

using Korvel::NumberError;
using Korvel::parseNumber;
using Korvel::parseUnsigned;
using Korvel::parseWholeNumber;

namespace {

constexpr int notParsed = 4711;

/// The result of parseUnsigned(), and the number if it stored one.
struct Unsigned {
    NumberError error = NumberError::none;
    std::uint32_t value = notParsed;

    bool operator==(const Unsigned&) const = default;
};

void PrintTo(const Unsigned& number, std::ostream* out) {
    *out << "error " << static_cast<int>(number.error) << ", value " << number.value;
}

Unsigned readUnsigned(const std::string& text, int base) {
    Unsigned number;
    number.error = parseUnsigned(text, base, number.value);
    return number;
}

struct UnsignedCase {
    std::string text;
    int base;
    std::uint32_t value;
};

void expectRead(const std::vector<UnsignedCase>& cases) {
    for (const auto& [text, base, value] : cases) {
        EXPECT_EQ(readUnsigned(text, base), (Unsigned{NumberError::none, value}))
            << '"' << text << "\" in base " << base;
    }
}

/// In every base, and no number is stored.
void expectError(NumberError error, const std::vector<std::string>& texts, const std::vector<int>& bases) {
    for (const std::string& text : texts) {
        for (const int base : bases) {
            EXPECT_EQ(readUnsigned(text, base), Unsigned{.error = error})
                << '"' << text << "\" in base " << base;
        }
    }
}

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
        int value = notParsed;
        EXPECT_EQ(parseNumber(text, value), NumberError::none);
        EXPECT_EQ(value, expected);
    }
}

TEST(ParseNumber, FindsNoDigits) {
    for (const std::string text : {"", " ", "x7", "-", "+-7", "- 7"}) {
        SCOPED_TRACE(text);
        int value = notParsed;
        EXPECT_EQ(parseNumber(text, value), NumberError::noDigits);
        EXPECT_EQ(value, notParsed);
    }
}

TEST(ParseNumber, RefusesNumbersBeyond32Bits) {
    for (const std::string text : {"2147483648", "-2147483649", "4294967296", "9223372036854775808",
                                   "-9223372036854775809", "99999999999999999999999999 lamps"}) {
        SCOPED_TRACE(text);
        int value = notParsed;
        EXPECT_EQ(parseNumber(text, value), NumberError::outOfRange);
        EXPECT_EQ(value, notParsed);
    }
}

TEST(ParseNumber, StopsAtAZeroByte) {
    int value = notParsed;

    EXPECT_EQ(parseNumber(std::string("12\0003", 4), value), NumberError::none);
    EXPECT_EQ(value, 12);
}

TEST(ParseUnsigned, ReadsHexadecimalWithAndWithoutItsPrefix) {
    expectRead({{"ff", 16, 255},
                {"0xFf", 16, 255},
                {"0XfF", 16, 255},
                {"010", 16, 16},
                {"00000000000000000000001", 16, 1},
                {"ffffffff", 16, 0xffffffffU}});
}

TEST(ParseUnsigned, ReadsDecimal) {
    expectRead({{"0", 10, 0}, {"010", 10, 10}, {"4294967295", 10, 0xffffffffU}});
}

TEST(ParseUnsigned, ChoosesTheBaseByTheNotationForBase0) {
    expectRead({{"10", 0, 10},
                {"010", 0, 8},
                {"0x10", 0, 16},
                {"0", 0, 0},
                {"037777777777", 0, 0xffffffffU},
                {"0xffffffff", 0, 0xffffffffU}});
}

TEST(ParseUnsigned, IgnoresTextAfterTheDigits) {
    expectRead({{"12 and more", 10, 12},
                {"1f", 10, 1},
                {"0x10", 10, 0},
                {"1g", 16, 1},
                {"0x", 16, 0},
                {"0xg", 0, 0},
                {"08", 0, 0},
                {"0189", 0, 1},
                {std::string("12\0003", 4), 10, 12}});
}

TEST(ParseUnsigned, AllowsBlanksAndASignInFront) {
    expectRead({{"+7", 10, 7},
                {" \t\n\v\f\r7", 10, 7},
                {" +0x1f ", 16, 31},
                {" +017", 0, 15},
                {"-0", 10, 0},
                {"-0x0", 0, 0}});
}

TEST(ParseUnsigned, FindsNoDigits) {
    expectError(NumberError::noDigits, {"", " ", "+", "-", "x1", "+-7", "- 7", "--7", "g", ".5"},
                {16, 10, 0});
    expectError(NumberError::noDigits, {"a", "ff"}, {10, 0});
}

TEST(ParseUnsigned, RefusesNegativeNumbers) {
    expectError(NumberError::outOfRange, {"-1", " -1 lamp", "-4294967295", "-99999999999999999999999"},
                {16, 10, 0});
}

TEST(ParseUnsigned, RefusesNumbersBeyond32Bits) {
    expectError(NumberError::outOfRange,
                {"4294967296", "9223372036854775807", "9223372036854775808", "18446744073709551616",
                 "99999999999999999999999999 lamps"},
                {16, 10, 0});
    expectError(NumberError::outOfRange, {"0x100000000", "0xffffffffffffffff", "0x10000000000000000"},
                {16, 0});
    expectError(NumberError::outOfRange, {"040000000000", "07777777777777777777777777"}, {0});
}

TEST(ParseWholeNumber, ReadsATextThatIsOnlyANumber) {
    constexpr unsigned long greatest = std::numeric_limits<unsigned long>::max();
    const struct {
        std::string text;
        unsigned long value;
    } cases[] = {{"0", 0},
                 {"007", 7},
                 {"+7", 7},
                 {" \t\n\v\f\r7", 7},
                 {std::to_string(greatest), greatest},
                 {"-0", 0},
                 {"-1", greatest},
                 {"-" + std::to_string(greatest), 1}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        unsigned long value = notParsed;
        EXPECT_EQ(parseWholeNumber(text, value), NumberError::none);
        EXPECT_EQ(value, expected);
    }
}

TEST(ParseWholeNumber, RefusesEverythingElse) {
    const struct {
        std::string text;
        NumberError error;
    } cases[] = {{"", NumberError::noDigits},
                 {" ", NumberError::noDigits},
                 {"-", NumberError::noDigits},
                 {"x", NumberError::noDigits},
                 {"7x", NumberError::noDigits},
                 {"7 ", NumberError::noDigits},
                 {"0x7", NumberError::noDigits},
                 {"18446744073709551616 lamps", NumberError::noDigits},
                 {"18446744073709551616", NumberError::outOfRange},
                 {"-18446744073709551616", NumberError::outOfRange}};
    for (const auto& [text, error] : cases) {
        SCOPED_TRACE(text);
        unsigned long value = notParsed;
        EXPECT_EQ(parseWholeNumber(text, value), error);
        EXPECT_EQ(value, static_cast<unsigned long>(notParsed));
    }
}

}  // namespace
