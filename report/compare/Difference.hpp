#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report {

/// A value that differs, came or went.
struct ValueChange {
    std::string part;
    std::string title;
    std::string name;
    std::size_t occurrence = 1;
    std::optional<std::string> before;  ///< as written
    std::optional<std::string> after;
    std::optional<double> difference;  ///< unknown if one of them is missing or no number
    std::optional<double> perSecond;   ///< unknown without the times of both packages
    bool fell = false;
};

/// A part that came or went, or whose text (neither values nor log entries) or state differs.
struct PartChange {
    enum class What : std::uint8_t { came, went, changed };
    std::string name;
    What what = What::changed;
    std::string detail;
};

struct NewEntries {
    std::string part;
    std::vector<LogEntry> entries;
};

/// What differs between two packages. Times of members do not count.
struct Difference {
    std::vector<PartChange> parts;
    std::vector<ValueChange> values;
    std::vector<NewEntries> logs;
    std::vector<Difference> nested;  ///< with their names
    std::string name;                ///< of the nested package; empty for the outer one
    std::optional<double> seconds;   ///< between the packages

    bool empty() const { return parts.empty() && values.empty() && logs.empty() && nested.empty(); }
};

/// Compares two judged packages that were loaded with all texts.
Difference compare(const Package& before, const Package& after, std::size_t maxLine);

}  // namespace Report
