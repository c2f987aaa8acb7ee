#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "History.hpp"
#include "Robust.hpp"

namespace Report {

/// A value of a board over time.
struct Course {
    std::string board;
    SeriesName name;
    std::vector<Point> points;
    std::optional<double> perHour;  ///< unknown if all packages have the same time
};

/// A value of a board that is unlike that of the other boards.
struct Outlier {
    Course course;
    double levelScore = 0;  ///< of the newest number among those of all boards
    double rateScore = 0;   ///< of the growth among that of all boards
    Robust levels;          ///< of all boards
    Robust rates;

    /// The one that is further from 0.
    double score() const;
};

/// What stands out among several boards.
struct FleetTrend {
    std::vector<Outlier> outliers;  ///< those with the highest scores first
    std::size_t leftOut = 0;        ///< further ones
    std::size_t boards = 0;         ///< that have an outlier, in `outliers` or not
};

/// What changed on one board.
struct BoardTrend {
    std::vector<Course> changed;  ///< those with the largest relative change first
    std::size_t leftOut = 0;      ///< further ones
    std::size_t constant = 0;     ///< values that are the same in all packages
};

/// Fewer boards do not tell what is usual.
constexpr std::size_t fewestBoards = 5;

/// A score from which a value stands out: normal numbers reach it once in two thousand.
constexpr double outlyingScore = 3.5;

/// Compares each value of each board with that value of the other boards. Keeps at most `most` outliers.
FleetTrend fleetTrend(History& history, std::size_t most);

/// The values of a board that changed, at most `most` of them.
BoardTrend boardTrend(History& history, const std::string& board, std::size_t most);

}  // namespace Report
