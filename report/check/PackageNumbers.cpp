#include "PackageNumbers.hpp"

#include <algorithm>
#include <functional>
#include <limits>
#include <type_traits>
#include <variant>

namespace Report {
namespace {

constexpr std::string_view sumSign = " + ";

}  // namespace

double numberOf(const Value& value) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    return std::visit(
        [&](const auto& number) {
            if constexpr (std::is_same_v<std::decay_t<decltype(number)>, std::monostate>) {
                return value.text.starts_with('-') ? -infinite : infinite;
            } else {
                return static_cast<double>(number);
            }
        },
        value.number);
}

std::optional<double> PackageNumbers::sumOf(const Value& value, std::string_view names) {
    double sum = 0;
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(sumSign), names.size());
        const auto found = all().find({value.part, value.title, names.substr(0, end), value.occurrence});
        if (found == all().end()) {
            return std::nullopt;
        }
        sum += found->second;
        names.remove_prefix(std::min(end + sumSign.size(), names.size()));
    }
    return sum;
}

std::size_t PackageNumbers::PlaceHash::operator()(const Place& place) const {
    const std::hash<std::string_view> hash;
    constexpr std::size_t odd = 0x9E3779B1;  // so that equal texts do not cancel each other
    return ((hash(place.part) * odd + hash(place.title)) * odd + hash(place.name)) * odd +
           static_cast<std::size_t>(place.occurrence);
}

const PackageNumbers::Numbers& PackageNumbers::all() {
    if (numbers.empty()) {
        numbers.reserve(package.values.size());
        for (const Value& value : package.values) {
            numbers.emplace(Place{value.part, value.title, value.name, value.occurrence}, numberOf(value));
        }
    }
    return numbers;
}

}  // namespace Report
