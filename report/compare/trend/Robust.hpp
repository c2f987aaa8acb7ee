#pragma once

#include <cstddef>
#include <vector>

namespace Report {

/// The middle of numbers, and how far from it most of them are. A few numbers that stand out change neither.
struct Robust {
    double median = 0;
    double spread = 0;       ///< as large as the standard deviation would be if the numbers were normal
    std::size_t meanOf = 0;  ///< so many distances, if the spread comes from their mean, else 0

    /// How many spreads a number is above the median. 0 if there is no spread. If the spread is a mean, the
    /// number's own distance is left out of it, down to half of the spread: two of eight equal numbers that
    /// are far off would hide each other.
    double scoreOf(double number) const;
};

/// The median; 0 without numbers.
double medianOf(std::vector<double> numbers);

/// The spread comes from the median of the distances from the median. If most numbers are equal, that is 0,
/// and the spread comes from the mean of these distances.
Robust robustOf(const std::vector<double>& numbers);

}  // namespace Report
