#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include "Moment.hpp"
#include "Quantity.hpp"

namespace {

using namespace Report;
using namespace std::chrono_literals;

constexpr Time packageTime = std::chrono::sys_days{2026y / 11 / 22} + 2h + 46min + 41s;

struct SizeCase {
    std::string_view text;
    std::optional<std::uint64_t> size;
};

TEST(Size, IsANumberOfBytesWithAnOptionalFactor) {
    for (const auto& [text, size] : {
             SizeCase{"1", 1},
             SizeCase{"4096", 4096},
             SizeCase{"4K", 4096},
             SizeCase{"64M", 64U << 20U},
             SizeCase{"4k", 4096},
             SizeCase{"64m", 64U << 20U},
             SizeCase{"2g", std::uint64_t{2} << 30U},
             SizeCase{"2G", std::uint64_t{2} << 30U},
             SizeCase{"18446744073709551615", UINT64_MAX},
         }) {
        EXPECT_EQ(parseSize(text), size) << text;
    }
}

TEST(Size, IsNothingElse) {
    for (const std::string_view text : {"", "K", "0", "0K", "-1", "+1", " 1", "1 ", "1T", "1KB", "1.5K",
                                        "0x10", "1K2", "18446744073709551616", "17179869184G"}) {
        EXPECT_EQ(parseSize(text), std::nullopt) << text;
    }
}

TEST(Seconds, AreADecimalNumberOfWhichThousandthsCount) {
    EXPECT_EQ(parseSeconds("10"), 10s);
    EXPECT_EQ(parseSeconds("0.5"), 500ms);
    EXPECT_EQ(parseSeconds("0.001"), 1ms);
    EXPECT_EQ(parseSeconds("1.23456"), 1234ms);
    for (const std::string_view text : {"0", "0.0", "0.0004", "0.000001"}) {
        EXPECT_EQ(parseSeconds(text), 0ms) << text;
    }
    for (const std::string_view text : {"", ".", ".5", "5.", "1.5.5", "0.000x", "-1", "1e3", "10000000000"}) {
        EXPECT_EQ(parseSeconds(text), std::nullopt) << text;
    }
}

struct MomentCase {
    std::string_view text;
    Time time;
};

TEST(TimeOnTheCommandLine, IsATimeOrADistanceFromThePackage) {
    const auto day = std::chrono::sys_days{2026y / 11 / 22};
    for (const auto& [text, time] : {
             MomentCase{"2026-11-22T02:46:40.995104Z", day + 2h + 46min + 40s + 995104us},
             MomentCase{"2026-11-22T03:46:40+01:00", day + 2h + 46min + 40s},
             MomentCase{"2026-11-22 02:46:40.5", day + 2h + 46min + 40s + 500ms},
             MomentCase{"2026-11-22 02:46:40", day + 2h + 46min + 40s},
             MomentCase{"2026-11-22 02:46:40 UTC", day + 2h + 46min + 40s},
             MomentCase{"2026-11-22 02:46:40.5 UTC", day + 2h + 46min + 40s + 500ms},
             MomentCase{"2026-11-22T02:46:40", day + 2h + 46min + 40s},
             MomentCase{"2026-11-22 03:46:40+01:00", day + 2h + 46min + 40s},
             MomentCase{"2026-11-22T02:46", day + 2h + 46min},
             MomentCase{"2026-11-22 02:46 UTC", day + 2h + 46min},
             MomentCase{"2026-11-22 02:46", day + 2h + 46min},
             MomentCase{"2026-11-22", day},
             MomentCase{"-30s", packageTime - 30s},
             MomentCase{"-10m", packageTime - 10min},
             MomentCase{"+2h", packageTime + 2h},
             MomentCase{"-1d", packageTime - 24h},
         }) {
        const std::optional<Moment> moment = Moment::parse(text);
        ASSERT_TRUE(moment.has_value()) << text;
        EXPECT_EQ(moment->resolve(packageTime), time) << text;
    }
}

TEST(TimeOnTheCommandLine, IsNothingElse) {
    for (const std::string_view text :
         {"", "-", "-m", "10m", "-10", "-10x", "-1.5h", "-99999999d", "now", "02:46", "2026-11-22 2:46",
          "2026-11-22 02:46 ", "2026-13-01", "2026-11-22 UTC", "2026-11-22 02:46:40Z UTC",
          "2026-11-22 02:46:40 CET"}) {
        EXPECT_EQ(Moment::parse(text), std::nullopt) << text;
    }
}

TEST(TimeOnTheCommandLine, NeedsATimeOfThePackageForADistance) {
    EXPECT_EQ(Moment::parse("-10m")->resolve(std::nullopt), std::nullopt);
    EXPECT_EQ(Moment::parse("2026-11-22")->resolve(std::nullopt), std::chrono::sys_days{2026y / 11 / 22});
}

}  // namespace
