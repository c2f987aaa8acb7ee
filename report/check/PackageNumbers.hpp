#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "Package.hpp"

namespace Report {

/// A number that has no type is too large for one: it is infinite here.
double numberOf(const Value& value);

/// The numbers of a package, for values that are compared with others.
class PackageNumbers {
public:
    /// The package must outlive this object.
    explicit PackageNumbers(const Package& ofPackage) : package(ofPackage) {}

    /// The sum of the values of "NAME + NAME" that are in the same table as a value. No sum if one is
    /// missing.
    std::optional<double> sumOf(const Value& value, std::string_view names);

private:
    struct Place {
        std::string_view part;
        std::string_view title;
        std::string_view name;
        std::uint64_t occurrence = 0;

        bool operator==(const Place&) const = default;
    };
    struct PlaceHash {
        std::size_t operator()(const Place& place) const;
    };
    using Numbers = std::unordered_map<Place, double, PlaceHash>;

    /// Filled at the first use: many packages have no value that is compared with others.
    const Numbers& all();

    const Package& package;
    Numbers numbers;
};

}  // namespace Report
