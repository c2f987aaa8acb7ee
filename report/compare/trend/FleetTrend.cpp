#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "Course.hpp"
#include "Trends.hpp"

namespace Report {

namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

/// A value of a board: its newest number, and its growth in an hour or `unknown`.
struct Measure {
    std::uint32_t board = 0;
    double level = 0;
    double perHour = unknown;
};

/// A measure that is unlike the others of its value.
struct Finding {
    const SeriesName* name = nullptr;
    std::uint32_t board = 0;
    double levelScore = 0;
    double rateScore = 0;
    Robust levels;
    Robust rates;

    double score() const { return std::max(std::abs(levelScore), std::abs(rateScore)); }
};

using Population = std::map<SeriesName, std::vector<Measure>>;

Population measuresOf(History& history, const std::vector<std::string>& boards) {
    Population population;
    for (std::size_t board = 0; board < boards.size(); ++board) {
        history.forEachSeries(boards[board], [&](const Series& series) {
            population[series.name].push_back({static_cast<std::uint32_t>(board), series.points.back().number,
                                               ratePerHour(series.points).value_or(unknown)});
        });
    }
    return population;
}

Robust robustOfAll(const std::vector<Measure>& measures, double Measure::*number) {
    std::vector<double> numbers;
    for (const Measure& measure : measures) {
        if (!std::isnan(measure.*number)) {
            numbers.push_back(measure.*number);
        }
    }
    return numbers.size() < fewestBoards ? Robust{} : robustOf(numbers);
}

void findOutliers(const SeriesName& name, const std::vector<Measure>& measures,
                  std::vector<Finding>& findings) {
    const Robust levels = robustOfAll(measures, &Measure::level);
    const Robust rates = robustOfAll(measures, &Measure::perHour);
    for (const Measure& measure : measures) {
        const double rateScore = std::isnan(measure.perHour) ? 0 : rates.scoreOf(measure.perHour);
        const Finding finding{&name, measure.board, levels.scoreOf(measure.level), rateScore, levels, rates};
        if (finding.score() >= outlyingScore) {
            findings.push_back(finding);
        }
    }
}

/// Reads the courses of the outliers, board by board.
std::vector<Outlier> outliersOf(History& history, const std::vector<std::string>& boards,
                                const std::vector<Finding>& findings) {
    std::vector<Outlier> outliers(findings.size());
    std::map<std::uint32_t, std::map<SeriesName, Outlier*>> wanted;
    for (std::size_t index = 0; index < findings.size(); ++index) {
        const Finding& finding = findings[index];
        outliers[index] = {{boards[finding.board], *finding.name, {}, {}},
                           finding.levelScore,
                           finding.rateScore,
                           finding.levels,
                           finding.rates};
        wanted[finding.board].emplace(*finding.name, &outliers[index]);
    }
    for (const auto& [board, series] : wanted) {
        history.forEachSeries(boards[board], [&wantedSeries = series](const Series& found) {
            if (const auto place = wantedSeries.find(found.name); place != wantedSeries.end()) {
                Course& course = place->second->course;
                course.points.assign(found.points.begin(), found.points.end());
                course.perHour = ratePerHour(found.points);
            }
        });
    }
    return outliers;
}

}  // namespace

double Outlier::score() const {
    return std::abs(rateScore) > std::abs(levelScore) ? rateScore : levelScore;
}

FleetTrend fleetTrend(History& history, std::size_t most) {
    const std::vector<std::string> boards = history.boards();
    const Population population = measuresOf(history, boards);
    std::vector<Finding> findings;
    for (const auto& [name, measures] : population) {
        findOutliers(name, measures, findings);
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& left, const Finding& right) { return left.score() > right.score(); });
    std::set<std::uint32_t> boardsFound;
    for (const Finding& finding : findings) {
        boardsFound.insert(finding.board);
    }
    FleetTrend trend;
    trend.boards = boardsFound.size();
    trend.leftOut = findings.size() - std::min(findings.size(), most);
    findings.resize(findings.size() - trend.leftOut);
    trend.outliers = outliersOf(history, boards, findings);
    return trend;
}

}  // namespace Report
