#include <cstdint>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ExpectedFile.hpp"
#include "HandMadePackage.hpp"
#include "Renderers.hpp"

namespace Report {
namespace {

using Test::at;
using Test::expectedFile;
using Test::HandMadePackage;
using Lines = std::vector<std::string>;

std::string metrics(const std::vector<Package>& packages) {
    std::ostringstream out;
    renderMetrics(out, packages, at(12, 0, 0));
    return out.str();
}

/// The samples of a metric, without its name.
Lines samples(const std::string& metric, const std::vector<Package>& packages) {
    std::istringstream lines(metrics(packages));
    Lines found;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(metric + '{')) {
            found.push_back(line.substr(metric.size()));
        }
    }
    return found;
}

/// A package of a board that has one value, `count`.
HandMadePackage packageOf(const std::string& board, std::optional<Time> time, std::int64_t count) {
    HandMadePackage package(board + ".tgz");
    package.board = board;
    package.time = time;
    package.addPart("mmi/iwf/HeapStats", "");
    package.addValue("heap", "in use", count, std::to_string(count));
    return package;
}

TEST(MetricsTest, HasVerdictTimeAgeAndEachValueOfEachBoard) {
    HandMadePackage seven = packageOf("board-7", at(11, 0, 0, 500000), 1009);
    seven.verdict = Verdict::incomplete;
    seven.addValue("heap", "in use", 0.25, "0.25", 2);
    seven.addValue("", "failed", std::int64_t{-3}, "-3");
    HandMadePackage unknown("some.tgz");
    unknown.sha256 = std::string(64, 'a');
    unknown.verdict = Verdict::cut;

    EXPECT_EQ(metrics({seven, unknown, packageOf("board-10", at(12, 0, 0), 0)}), expectedFile("boards.prom"));
}

TEST(MetricsTest, KeepsPackagesApartOfWhichNeitherBoardNorChecksumIsKnown) {
    HandMadePackage one("one.tgz");
    HandMadePackage other("other.tgz");
    one.sha256.clear();
    other.sha256.clear();
    const std::string text = metrics({one, other});
    EXPECT_THAT(text, testing::HasSubstr("{board=\"file:one.tgz\","));
    EXPECT_THAT(text, testing::HasSubstr("{board=\"file:other.tgz\","));
}

TEST(MetricsTest, HasOnlyTheNewestPackageOfEachBoard) {
    HandMadePackage unset = packageOf("board-7", at(23, 0, 0), 4);
    unset.clockUnset = true;
    const HandMadePackage timeless = packageOf("board-7", std::nullopt, 3);
    const HandMadePackage early = packageOf("board-7", at(1, 0, 0), 1);
    const HandMadePackage late = packageOf("board-7", at(2, 0, 0), 2);
    const HandMadePackage lateToo = packageOf("board-7", at(2, 0, 0), 5);
    const struct {
        std::vector<Package> packages;
        std::string value;
    } cases[] = {
        {{early, late}, "2"},     {{late, early}, "2"},     {{timeless, early}, "1"},
        {{early, timeless}, "1"}, {{unset, early}, "1"},    {{early, unset}, "1"},
        {{timeless, unset}, "4"}, {{unset, timeless}, "4"}, {{late, lateToo}, "5"},
    };
    for (const auto& [packages, value] : cases) {
        EXPECT_EQ(
            samples("korvel_value", packages),
            Lines{R"({board="board-7",part="mmi/iwf/HeapStats",title="heap",name="in use",occurrence="1"} )" +
                  value});
    }
}

TEST(MetricsTest, NeverJoinsUnknownBoards) {
    HandMadePackage first("-");
    first.sha256 = std::string(64, 'a');
    HandMadePackage second("-");
    second.sha256 = std::string(64, 'b');

    EXPECT_EQ(samples("korvel_package_verdict", {first, second, first}).size(), 12U);
}

TEST(MetricsTest, HasNoTimeOfAPackageWithoutTime) {
    const HandMadePackage package = packageOf("board-7", std::nullopt, 0);

    EXPECT_EQ(samples("korvel_package_time_seconds", {package}), Lines{});
    EXPECT_EQ(samples("korvel_package_age_seconds", {package}), Lines{});
}

TEST(MetricsTest, WritesNumbersAsTheirReaderCanParseThem) {
    const struct {
        Number number;
        std::string text;
        std::string sample;
    } cases[] = {
        {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808", "-9223372036854775808"},
        {std::numeric_limits<std::uint64_t>::max(), "0xffffffffffffffff", "18446744073709551615"},
        {0.1, "+0.10", "0.1"},
        {-1.5e300, "-1", "-1.5e+300"},
        {{}, "18446744073709551616", "18446744073709551616"},
        {{}, "0x10000000000000000", "NaN"},
        {{}, std::string(400, '9'), "+Inf"},
        {{}, "-" + std::string(400, '9'), "-Inf"},
    };
    for (const auto& [number, text, sample] : cases) {
        HandMadePackage package("a.tgz");
        package.board = "a";
        package.addPart("p", "");
        package.addValue("", "n", number, text);
        EXPECT_EQ(samples("korvel_value", {package}),
                  Lines{R"({board="a",part="p",title="",name="n",occurrence="1"} )" + sample});
    }
}

TEST(MetricsTest, MakesTextsSafeAndCountsNamesThatLookTheSame) {
    HandMadePackage package("a.tgz");
    package.board = "\"a\\\n\xC3\xA4\xFF\x1b";
    package.addPart("p", "");
    package.addValue("", "\xFF", std::int64_t{1}, "1");
    package.addValue("", "\\xff", std::int64_t{2}, "2");

    EXPECT_EQ(samples("korvel_value", {package}),
              (Lines{R"({board="\"a\\\\x0aä\\xff\\x1b",part="p",title="",name="\\xff",occurrence="1"} 1)",
                     R"({board="\"a\\\\x0aä\\xff\\x1b",part="p",title="",name="\\xff",occurrence="2"} 2)"}));
}

TEST(MetricsTest, LeavesOutNestedPackages) {
    HandMadePackage package("a.tgz");
    package.nested = {packageOf("board-7", at(6, 0, 0), 1)};

    EXPECT_EQ(samples("korvel_value", {package}), Lines{});
}

}  // namespace
}  // namespace Report
