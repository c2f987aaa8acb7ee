#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "Decimal.hpp"

namespace Report {
namespace {

std::string difference(const std::string& later, const std::string& earlier) {
    const std::optional<Decimal> minuend = Decimal::parse(later);
    const std::optional<Decimal> subtrahend = Decimal::parse(earlier);
    return minuend && subtrahend ? minuend->minus(*subtrahend).signedText() : "not a number";
}

TEST(DecimalTest, SubtractsExactly) {
    const struct {
        std::string later;
        std::string earlier;
        std::string difference;
    } cases[] = {
        {"1009", "0", "+1009"},
        {"0", "1009", "-1009"},
        {"7", "7", "0"},
        {"100", "1", "+99"},
        {"1", "100", "-99"},
        {"-5", "3", "-8"},
        {"3", "-5", "+8"},
        {"-5", "-3", "-2"},
        {"-3", "-5", "+2"},
        {"+4", "1", "+3"},
        {"007", "7", "0"},
        {"-0", "0", "0"},
        // A double cannot hold these.
        {"18446744073709551615", "0", "+18446744073709551615"},
        {"18446744073709551615", "18446744073709551614", "+1"},
        {"18446744073709551615", "-9223372036854775808", "+27670116110564327423"},
        {"-9223372036854775808", "18446744073709551615", "-27670116110564327423"},
        {"100000000000000000000000000000", "99999999999999999999999999999", "+1"},
        {"0.3", "0.1", "+0.2"},
        {"0.1", "0.3", "-0.2"},
        {"0.05", "0", "+0.05"},
        {"1.50", "1.5", "0"},
        {"2", "0.001", "+1.999"},
        {".5", "5.", "-4.5"},
        {"0x1F", "16", "+15"},
        {"0xffffffffffffffff", "0XFFFFFFFFFFFFFFFE", "+1"},
    };
    for (const auto& [later, earlier, expected] : cases) {
        EXPECT_EQ(difference(later, earlier), expected) << later << " - " << earlier;
    }
}

TEST(DecimalTest, RefusesWhatIsNoNumber) {
    for (const std::string text : {"", "-", "+", ".", "0x", "0xg", "0x1 ", "1e5", "1.2.3", "--1", "0x-1",
                                   " 1", "inf", "0x10000000000000000"}) {
        EXPECT_FALSE(Decimal::parse(text)) << text;
    }
    EXPECT_TRUE(Decimal::parse(std::string(4096, '9')));
    EXPECT_FALSE(Decimal::parse(std::string(4097, '9')));
}

TEST(DecimalTest, RoundsOnlyOnRequest) {
    const double infinity = std::numeric_limits<double>::infinity();

    EXPECT_EQ(Decimal::parse("-1009.25")->approximate(), -1009.25);
    EXPECT_EQ(Decimal::parse("18446744073709551616")->approximate(), 18446744073709551616.0);
    EXPECT_EQ(Decimal::parse(std::string(400, '9'))->approximate(), infinity);
    EXPECT_EQ(Decimal::parse("-" + std::string(400, '9'))->approximate(), -infinity);
    EXPECT_EQ(Decimal::parse("0." + std::string(400, '0') + "1")->approximate(), 0);
    EXPECT_EQ(Decimal::parse("0")->approximate(), 0);
}

}  // namespace
}  // namespace Report
