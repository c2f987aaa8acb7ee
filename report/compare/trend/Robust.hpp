#pragma once

#include <vector>

namespace Report {

/// The middle of numbers, and how far from it most of them are. A few numbers that stand out change neither.
struct Robust {
    double median = 0;
    double spread = 0;  ///< as large as the standard deviation would be if the numbers were normal

    /// How many spreads a number is above the median. 0 if there is no spread.
    double scoreOf(double number) const { return spread > 0 ? (number - median) / spread : 0; }
};

/// The median; 0 without numbers.
double medianOf(std::vector<double> numbers);

/// The spread comes from the median of the distances from the median. If most numbers are equal, that is 0,
/// and the spread comes from the mean of these distances.
Robust robustOf(const std::vector<double>& numbers);

}  // namespace Report
