#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Density.hpp"
#include "EntrySelection.hpp"
#include "View.hpp"

namespace Report::Html {

/// A log that has a part in the timeline.
struct TimelineLog {
    std::string name;
    std::string textId;  ///< of its text on the page
    LevelCounts counts{};
    std::uint64_t kept = 0;  ///< of its entries, on this page
    std::optional<Time> first;
    std::optional<Time> last;
};

/// All logs of all packages of the page, by time.
struct Timeline {
    std::vector<TimelineLog> logs;
    std::vector<DensityColumn> columns;  ///< of all entries
    std::vector<KeptEntry> entries;      ///< those that the page holds, by time
    LevelCounts counts{};                ///< of all entries
    std::uint64_t all = 0;
    std::uint64_t kept = 0;  ///< entries of logs, so one that two logs contain counts twice
};

/// Reads all logs once. Keeps entries that take about `bytes` on the page.
Timeline timelineOf(const std::vector<View>& views, std::size_t maxLine, std::size_t bytes);

/// Writes the section, with the newest of the most important entries for a reader without JavaScript.
void writeTimeline(std::ostream& out, const Timeline& timeline);

}  // namespace Report::Html
