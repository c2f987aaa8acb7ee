#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report {

/// Parts that are not present for the same reason.
struct PartGroup {
    const Part* first = nullptr;     ///< its state, certainty and evidence are those of all
    std::string cause;               ///< of all; of several, without the names of the parts
    std::vector<std::string> names;  ///< safe for a terminal, in the order of the package
};

/// The expected or the other parts of a package that should not be relied on, by state and cause. The package
/// must outlive the groups.
std::vector<PartGroup> troubledParts(const Package& package, bool expected);

/// The number of parts that were expected.
std::size_t countExpected(const Package& package);
/// The number of expected or of other parts that should not be relied on. Parts that were not read do not
/// count.
std::size_t countTroubled(const Package& package, bool expected);

}  // namespace Report
