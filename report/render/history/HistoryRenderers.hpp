#pragma once

#include <iosfwd>
#include <string>

#include "Renderers.hpp"
#include "Trends.hpp"

namespace Report {

/// What a trend is about.
struct HistoryHead {
    std::string store;  ///< its path
    HistorySummary summary;
};

/// Each prints a trend: as text with a line of blocks for each course, or as a page with plots. All texts are
/// made safe.
void renderTrend(std::ostream& out, const HistoryHead& head, const FleetTrend& trend, const TextStyle& style);
void renderTrend(std::ostream& out, const HistoryHead& head, const std::string& board,
                 const BoardTrend& trend, const TextStyle& style);
void renderTrendPage(std::ostream& out, const HistoryHead& head, const FleetTrend& trend);
void renderTrendPage(std::ostream& out, const HistoryHead& head, const std::string& board,
                     const BoardTrend& trend);

}  // namespace Report
