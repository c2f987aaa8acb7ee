#include <vector>

#include <gtest/gtest.h>

#include "Course.hpp"
#include "Robust.hpp"

namespace {

using Report::medianOf;
using Report::Point;
using Report::robustOf;

constexpr double tolerance = 1e-9;

TEST(Robust, TheMedianIsTheMiddleNumberOrTheMeanOfTheTwoInTheMiddle) {
    EXPECT_DOUBLE_EQ(medianOf({3, 1, 2}), 2);
    EXPECT_DOUBLE_EQ(medianOf({4, 1, 3, 2}), 2.5);
    EXPECT_DOUBLE_EQ(medianOf({}), 0);
}

TEST(Robust, ANumberThatStandsOutChangesNeitherMedianNorSpread) {
    const Report::Robust usual = robustOf({10, 11, 12, 13, 14});
    const Report::Robust withOutlier = robustOf({10, 11, 12, 13, 1e9});
    EXPECT_DOUBLE_EQ(withOutlier.median, usual.median);
    EXPECT_DOUBLE_EQ(withOutlier.spread, usual.spread);
    EXPECT_NEAR(usual.spread, 1.4826, tolerance);
    EXPECT_NEAR(usual.scoreOf(12 - 2 * 1.4826), -2, tolerance);
}

TEST(Robust, AmongEqualNumbersOneAloneStandsOut) {
    EXPECT_NEAR(robustOf({0, 0, 0, 0, 5}).scoreOf(5), 2 * 5 / 1.2533, tolerance);
}

TEST(Robust, AmongEqualNumbersTwoThatStandOutDoNotHideEachOther) {
    EXPECT_NEAR(robustOf({0, 0, 0, 0, 0, 0, 70, 70}).scoreOf(70), 7 / 1.2533, tolerance);
}

TEST(Robust, AmongEqualNumbersManyOthersAreUsual) {
    EXPECT_LT(robustOf({0, 0, 0, 0, 0, 70, 70, 70}).scoreOf(70), 3.5);
    EXPECT_NEAR(robustOf({0, 0, 0, 0, 0, 0, 1, 70}).scoreOf(1), 7 / 1.2533 / 70, tolerance);
}

TEST(Robust, AmongEqualNumbersNoneStandsOut) {
    EXPECT_DOUBLE_EQ(robustOf({7, 7, 7}).scoreOf(7), 0);
}

TEST(Course, ARestartDoesNotChangeTheGrowth) {
    const std::vector<Point> points{{0, 100}, {3600, 200}, {7200, 300}, {10800, 5}, {12600, 55}};
    EXPECT_DOUBLE_EQ(Report::ratePerHour(points).value(), 100);
}

TEST(Course, ThereIsNoGrowthWithoutTime) {
    EXPECT_FALSE(Report::ratePerHour(std::vector<Point>{{5, 1}, {5, 2}}).has_value());
}

TEST(Course, TheChangeIsRelativeToTheFirstNumber) {
    EXPECT_DOUBLE_EQ(Report::relativeChange(std::vector<Point>{{0, 200}, {1, 50}}), -0.75);
    EXPECT_DOUBLE_EQ(Report::relativeChange(std::vector<Point>{{0, 0}, {1, 50}}), 50);
}

}  // namespace
