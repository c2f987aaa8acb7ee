#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "Time.hpp"

namespace Report {

/// A time zone of a board. Converts between its local time and UTC.
class Zone {
public:
    /// UTC.
    Zone() = default;

    /// Finds a zone by an offset ("+02:00"), a name of the time zone database ("Europe/Helsinki") or a
    /// description of POSIX ("CET-1CEST"). Returns no value for any other text, and for a name that is not in
    /// this machine's database.
    static std::optional<Zone> find(std::string_view name);

    /// A local time that occurs twice is one of the two. One that was skipped is moved over the gap.
    Time toUtc(std::chrono::local_seconds local) const;
    std::chrono::local_seconds toLocal(Time time) const;

private:
    std::chrono::seconds offsetAt(std::chrono::local_seconds local) const;

    std::chrono::seconds offset{};  // east of Greenwich, if `rules` is empty
    std::string rules;              // for the C library's variable TZ

    // A log has many entries in a short time, and the C library is slow to change its zone.
    mutable std::optional<std::chrono::local_seconds> cachedQuarter;
    mutable std::chrono::seconds cachedOffset{};
};

}  // namespace Report
