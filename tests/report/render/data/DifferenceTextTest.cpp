#include <cstdint>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Difference.hpp"
#include "DifferentPair.hpp"
#include "ExpectedFile.hpp"
#include "HandMadePackage.hpp"
#include "Renderers.hpp"

namespace Report {
namespace {

using Test::at;
using Test::DifferentPair;
using Test::expectedFile;
using Test::HandMadePackage;

std::string text(const Package& before, const Package& after, const TextStyle& style = {}) {
    std::ostringstream out;
    renderDifference(out, compare(before, after, 400), style);
    return out.str();
}

TEST(DifferenceTextTest, ShowsPartsValuesAndNewEntries) {
    const DifferentPair pair;

    EXPECT_EQ(text(pair.before, pair.after), expectedFile("difference.txt"));
}

TEST(DifferenceTextTest, ColoursHeadingsLevelsAndFallingNumbersOnRequest) {
    const DifferentPair pair;

    EXPECT_EQ(text(pair.before, pair.after, {.colour = true}), expectedFile("difference_in_colour.txt"));
}

TEST(DifferenceTextTest, ShowsNestedPackagesAndWhatWasNotCompared) {
    const DifferentPair pair;
    HandMadePackage before("before.tgz");
    HandMadePackage after("after.tgz");
    before.board = "board-7";
    after.board = "board-8";
    after.verdict = Verdict::cut;
    before.addPart("ti/netfp_proxy", "a\n");
    before.nested = {pair.before};
    after.nested = {pair.before};
    after.nested.front().parts.front().state = State::notRead;
    after.nested.front().parts.front().text = {};

    EXPECT_EQ(text(before, after), expectedFile("difference_nested.txt"));
}

TEST(DifferenceTextTest, SaysHowFarApartThePackagesAreOrWhyThatIsUnknown) {
    HandMadePackage before("a");
    HandMadePackage after("b");
    before.time = at(0, 0, 0);
    after.time = at(0, 0, 0);
    const std::string start =
        "before  a: unknown board, 2026-11-22 00:00:00 UTC, whole\n"
        "after   b: unknown board, 2026-11-22 00:00:00 UTC, whole\n";
    EXPECT_EQ(text(before, after), start +
                                       "Both packages have the same time, so there are no rates.\n"
                                       "They do not differ.\n");
    after.time.reset();
    EXPECT_NE(text(before, after).find("\nThe time between them is unknown, so there are no rates.\n"),
              std::string::npos);
    const struct {
        Time time;
        std::string remark;
    } cases[] = {
        {at(0, 0, 0, 300000), "The second package is 0.3 s newer than the first."},
        {at(0, 0, 59), "The second package is 59 s newer than the first."},
        {at(0, 1, 0), "The second package is 1 min newer than the first."},
        {at(27, 0, 1), "The second package is 1 d 3 h 1 s newer than the first."},
        {at(-1, 0, 0), "The second package is 1 h older than the first."},
    };
    for (const auto& [time, remark] : cases) {
        after.time = time;
        EXPECT_NE(text(before, after).find(remark), std::string::npos) << remark;
    }
}

TEST(DifferenceTextTest, SaysIfNothingCouldBeCompared) {
    HandMadePackage before("a");
    HandMadePackage after("b");
    before.addPart("p", "text\n");
    after.verdict = Verdict::altered;

    EXPECT_NE(text(before, after).find("\nNothing could be compared.\n"), std::string::npos);
}

TEST(DifferenceTextTest, CutsLongLinesAndKeepsColumnsWithLongNumbers) {
    HandMadePackage before("a");
    HandMadePackage after("b");
    before.addPart("p", std::string(300, 'x') + "\n");
    before.addValue("", "n", std::monostate(), std::string(300, '1'));
    after.addPart("p", "");
    after.addValue("", "n", std::int64_t{1}, "1");

    EXPECT_EQ(text(before, after), expectedFile("difference_long.txt"));
}

}  // namespace
}  // namespace Report
