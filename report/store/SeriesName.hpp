#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

namespace Report {

/// What identifies a value of a board.
struct SeriesKey {
    std::string_view part;
    std::string_view title;
    std::string_view name;
    std::int64_t occurrence = 0;

    bool operator==(const SeriesKey&) const = default;
    bool operator<(const SeriesKey& other) const {
        return std::tie(part, title, name, occurrence) <
               std::tie(other.part, other.title, other.name, other.occurrence);
    }
};

/// The same with texts of its own.
struct SeriesName {
    std::string part;
    std::string title;
    std::string name;
    std::int64_t occurrence = 1;

    SeriesKey key() const { return {part, title, name, occurrence}; }
    bool operator<(const SeriesName& other) const { return key() < other.key(); }
};

}  // namespace Report
