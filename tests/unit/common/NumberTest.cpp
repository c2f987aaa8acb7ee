#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Number.hpp"

using Korvel::NumberError;
using Korvel::parseNumber;
using Korvel::parseUnsigned;

namespace {

constexpr int untouched = 4711;

/// What parseUnsigned() says, and what it wrote where it wrote something.
struct Unsigned {
    NumberError error = NumberError::none;
    std::uint32_t value = untouched;
    std::size_t length = untouched;

    bool operator==(const Unsigned&) const = default;
};

void PrintTo(const Unsigned& number, std::ostream* out) {
    *out << "error " << static_cast<int>(number.error) << ", value " << number.value << ", length "
         << number.length;
}

Unsigned readUnsigned(const std::string& text, int base) {
    Unsigned number;
    number.error = parseUnsigned(text, base, number.value, number.length);
    return number;
}

struct UnsignedCase {
    std::string text;
    int base;
    std::uint32_t value;
    std::size_t length;
};

void expectRead(const std::vector<UnsignedCase>& cases) {
    for (const auto& [text, base, value, length] : cases) {
        EXPECT_EQ(readUnsigned(text, base), (Unsigned{NumberError::none, value, length}))
            << '"' << text << "\" in base " << base;
    }
}

/// In every base, with nothing written.
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

TEST(ParseUnsigned, ReadsHexadecimalWithAndWithoutItsPrefix) {
    expectRead({{"ff", 16, 255, 2},
                {"0xFf", 16, 255, 4},
                {"0XfF", 16, 255, 4},
                {"010", 16, 16, 3},
                {"00000000000000000000001", 16, 1, 23},
                {"ffffffff", 16, 0xffffffffU, 8}});
}

TEST(ParseUnsigned, ReadsDecimal) {
    expectRead({{"0", 10, 0, 1}, {"010", 10, 10, 3}, {"4294967295", 10, 0xffffffffU, 10}});
}

TEST(ParseUnsigned, ReadsWhatTheNotationSaysInBase0) {
    expectRead({{"10", 0, 10, 2},
                {"010", 0, 8, 3},
                {"0x10", 0, 16, 4},
                {"0", 0, 0, 1},
                {"037777777777", 0, 0xffffffffU, 12},
                {"0xffffffff", 0, 0xffffffffU, 10}});
}

TEST(ParseUnsigned, TellsWhereTheDigitsEnd) {
    expectRead({{"12 and more", 10, 12, 2},
                {"1f", 10, 1, 1},
                {"0x10", 10, 0, 1},
                {"1g", 16, 1, 1},
                {"0x", 16, 0, 1},
                {"0xg", 0, 0, 1},
                {"08", 0, 0, 1},
                {"0189", 0, 1, 2},
                {std::string("12\0003", 4), 10, 12, 2}});
}

TEST(ParseUnsigned, AllowsBlanksAndASignInFrontAndCountsThem) {
    expectRead({{"+7", 10, 7, 2},
                {" \t\n\v\f\r7", 10, 7, 7},
                {" +0x1f ", 16, 31, 6},
                {" +017", 0, 15, 5},
                {"-0", 10, 0, 2},
                {"-0x0", 0, 0, 4}});
}

TEST(ParseUnsigned, FindsNoDigits) {
    expectError(NumberError::noDigits, {"", " ", "+", "-", "x1", "+-7", "- 7", "--7", "g", ".5"},
                {16, 10, 0});
    expectError(NumberError::noDigits, {"a", "ff"}, {10, 0});
}

TEST(ParseUnsigned, RefusesWhatIsBelowZero) {
    expectError(NumberError::outOfRange, {"-1", " -1 lamp", "-4294967295", "-99999999999999999999999"},
                {16, 10, 0});
}

TEST(ParseUnsigned, RefusesWhatDoesNotFit32Bits) {
    expectError(NumberError::outOfRange,
                {"4294967296", "9223372036854775807", "9223372036854775808", "18446744073709551616",
                 "99999999999999999999999999 lamps"},
                {16, 10, 0});
    expectError(NumberError::outOfRange, {"0x100000000", "0xffffffffffffffff", "0x10000000000000000"},
                {16, 0});
    expectError(NumberError::outOfRange, {"040000000000", "07777777777777777777777777"}, {0});
}

}  // namespace
