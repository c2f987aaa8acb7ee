#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Time.hpp"

namespace Report {

/// The levels of the log library, by their numbers in a log line.
enum class Level : std::uint8_t { error = 0, warning = 1, information = 2, debug = 3 };

/// One entry of a log. The texts are bytes as they came. Lines without a time belong to the entry before
/// them, and are in `text` after a line feed.
struct LogEntry {
    std::optional<Time> time;    ///< unknown only for lines before the first entry
    std::optional<Level> level;  ///< unknown if the form of the log has none
    std::string tag;
    std::string text;

    bool operator==(const LogEntry&) const = default;
};

}  // namespace Report
