#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Value.hpp"

namespace Report {

/// A value that differs, came or went. At least one of the two values is known.
struct ValueChange {
    const Value* before = nullptr;
    const Value* after = nullptr;
    std::string difference = {};  ///< exact and with a sign; empty if a value is unknown or too long
    std::optional<double> perSecond =
        {};  ///< unknown without a difference or without the time between the values
    bool fell = false;

    const Value& either() const { return after != nullptr ? *after : *before; }
};

/// Compares the values of one part, and adds the changes: those of the later values in their order, then the
/// values that went. Numbers that are equal do not differ, however they are written. `seconds` is the time
/// from the first to the second values, and not 0.
void compareValues(std::span<const Value* const> before, std::span<const Value* const> after,
                   std::optional<double> seconds, std::vector<ValueChange>& changes);

}  // namespace Report
