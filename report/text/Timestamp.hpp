#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "Time.hpp"

namespace Report {

/// A date and time of syslog, such as "Nov  2 06:08:58": local time without a year.
struct SyslogTime {
    std::chrono::month_day date;
    std::chrono::seconds time{};  ///< since midnight
};

/// Takes the time of the log library, such as "2026-11-22T02:46:40.995104Z", from the start of `text`. Leaves
/// `text` unchanged if it starts with something else. Digits beyond microseconds are ignored.
std::optional<Time> takeUtcTime(std::string_view& text);

/// The same for a time of syslog.
std::optional<SyslogTime> takeSyslogTime(std::string_view& text);

/// Reads the whole of `text` as a time of RFC 3339, with any offset.
std::optional<Time> parseRfc3339(std::string_view text);

/// Reads the whole of `text` as a date and a time without an offset: "2026-11-22 02:46:40.995".
std::optional<Time> parseLocalTime(std::string_view text);

/// Reads the whole of `text` as seconds since 1970: "1795315600.995".
std::optional<Time> parseEpoch(std::string_view text);

/// Reads the whole of `text` as an offset from UTC: "+02:00", "-0330" or "+02".
std::optional<std::chrono::minutes> parseOffset(std::string_view text);

}  // namespace Report
