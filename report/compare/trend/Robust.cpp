#include "Robust.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace Report {

namespace {

// The standard deviation of normal numbers by their median and by their mean distance.
constexpr double perMedianDistance = 1.4826;
constexpr double perMeanDistance = 1.2533;

}  // namespace

double medianOf(std::vector<double> numbers) {
    if (numbers.empty()) {
        return 0;
    }
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    if (numbers.size() % 2 == 1) {
        return *middle;
    }
    return std::midpoint(*std::max_element(numbers.begin(), middle), *middle);
}

Robust robustOf(const std::vector<double>& numbers) {
    const double median = medianOf(numbers);
    std::vector<double> distances;
    distances.reserve(numbers.size());
    for (const double number : numbers) {
        distances.push_back(std::abs(number - median));
    }
    const double mean = numbers.empty() ? 0
                                        : std::accumulate(distances.begin(), distances.end(), 0.0) /
                                              static_cast<double>(numbers.size());
    const double middle = medianOf(std::move(distances));
    return {median, middle > 0 ? middle * perMedianDistance : mean * perMeanDistance};
}

}  // namespace Report
