#pragma once

#include <span>
#include <string>
#include <vector>

#include "HistoryRenderers.hpp"

namespace Report {

// Phrases of both forms of a trend. They are raw: names in them are made safe where they are written.

/// The number as a user would write it: "18000000", "0.25".
std::string numberText(double number);

/// "+3400000" or "-0.25"; "-" if it is unknown.
std::string hourlyText(const std::optional<double>& perHour);

/// "98.0": how far a value stands out.
std::string scoreText(double score);

/// "mmi/iwf/HeapStats: heap / bytes in use".
std::string nameText(const SeriesName& name);

/// "10,000 packages of 2,000 boards", or "5 packages of lab-17".
std::string scopeText(const HistorySummary& summary, const std::string* board);

/// "2026-11-18 23:06:40 UTC to 2026-11-19 03:07:39 UTC"; empty without packages.
std::string periodText(const HistorySummary& summary);

/// "9,998 whole, 2 incomplete".
std::string verdictsText(const HistorySummary& summary);

/// What was not considered, as a sentence; empty if everything was.
std::string leftOutText(const HistorySummary& summary);

/// What stands out, or what changed, as a sentence.
std::string conclusionText(const FleetTrend& trend, const HistorySummary& summary);
std::string conclusionText(const BoardTrend& trend);

/// The points as blocks of eight heights, at most `most` of them: the lowest number is the lowest block.
std::string sparkline(std::span<const Point> points, std::size_t most);

/// At most `most` places of `count`: the first, the last, and others evenly between them.
std::vector<std::size_t> evenPlaces(std::size_t count, std::size_t most);

}  // namespace Report
