#include "Course.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "Robust.hpp"

namespace Report {

std::optional<double> ratePerHour(std::span<const Point> points) {
    constexpr double hour = 3600;  // seconds
    std::vector<double> rates;
    for (std::size_t index = 1; index < points.size(); ++index) {
        const Point& before = points[index - 1];
        const Point& after = points[index];
        if (after.time > before.time) {
            rates.push_back((after.number - before.number) * hour /
                            static_cast<double>(after.time - before.time));
        }
    }
    return rates.empty() ? std::nullopt : std::optional(medianOf(std::move(rates)));
}

double relativeChange(std::span<const Point> points) {
    const double first = points.front().number;
    return (points.back().number - first) / std::max(std::abs(first), 1.0);
}

bool isConstant(std::span<const Point> points) {
    return std::ranges::all_of(points, [&](const Point& point) {
        return !(point.number < points.front().number) && !(point.number > points.front().number);
    });
}

}  // namespace Report
