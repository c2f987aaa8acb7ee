#pragma once

#include <optional>
#include <span>

#include "History.hpp"

namespace Report {

/// How much a value grows in an hour: the median of the rates between neighbours, so that a restart does not
/// count. Unknown without two packages of different times.
std::optional<double> ratePerHour(std::span<const Point> points);

/// How much a value changed between its first and its last point, in relation to the first: 2 if it tripled.
double relativeChange(std::span<const Point> points);

/// Whether the number is the same in all points.
bool isConstant(std::span<const Point> points);

}  // namespace Report
