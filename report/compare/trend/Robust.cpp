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

double Robust::scoreOf(double number) const {
    const double distance = number - median;
    double unit = spread;
    if (meanOf > 1) {
        const auto count = static_cast<double>(meanOf);
        const double others = (spread * count - perMeanDistance * std::abs(distance)) / (count - 1);
        unit = std::max(others, spread / 2);
    }
    return unit > 0 ? distance / unit : 0;
}

Robust robustOf(const std::vector<double>& numbers) {
    const double median = medianOf(numbers);
    std::vector<double> distances;
    distances.reserve(numbers.size());
    for (const double number : numbers) {
        distances.push_back(std::abs(number - median));
    }
    const double total = std::accumulate(distances.begin(), distances.end(), 0.0);
    if (const double middle = medianOf(std::move(distances)); middle > 0 || numbers.empty()) {
        return {median, middle * perMedianDistance, 0};
    }
    return {median, total / static_cast<double>(numbers.size()) * perMeanDistance, numbers.size()};
}

}  // namespace Report
