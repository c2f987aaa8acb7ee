#include <algorithm>
#include <cmath>

#include "Course.hpp"
#include "Trends.hpp"

namespace Report {

BoardTrend boardTrend(History& history, const std::string& board, std::size_t most) {
    BoardTrend trend;
    history.forEachSeries(board, [&](const Series& series) {
        if (isConstant(series.points)) {
            ++trend.constant;
            return;
        }
        trend.changed.push_back(
            {board, series.name, {series.points.begin(), series.points.end()}, ratePerHour(series.points)});
    });
    std::stable_sort(trend.changed.begin(), trend.changed.end(), [](const Course& left, const Course& right) {
        return std::abs(relativeChange(left.points)) > std::abs(relativeChange(right.points));
    });
    if (trend.changed.size() > most) {
        trend.leftOut = trend.changed.size() - most;
        trend.changed.resize(most);
    }
    return trend;
}

}  // namespace Report
