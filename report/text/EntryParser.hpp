#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "LogEntry.hpp"
#include "LogForms.hpp"
#include "Time.hpp"
#include "Timestamp.hpp"
#include "Zone.hpp"

namespace Report {

/// Whether a line of a log has a time. A line without one belongs to the entry before it. `forms` are further
/// forms of lines, or null.
bool startsEntry(std::string_view line, const LogForms* forms = nullptr);

/// Reads lines of logs. The forms are, the first of the log library and the others of syslog:
///
///     2026-11-22T02:46:40.995104Z LEVEL TAG: TEXT
///     Nov 22 02:46:40 TAG: TEXT
///     Nov 22 02:46:40 HOST TAG: TEXT
///     <PRIORITY>Nov 22 02:46:40 TAG: TEXT
///
/// Other forms are those of rules. Their times have the form of RFC 3339, the same without an offset, the
/// form of syslog, or seconds since 1970.
///
/// A time makes an entry. If what follows the time has another form, all of it is the text.
class EntryParser {
public:
    /// Syslog tells neither zone nor year. `zone` is of the board. Of the years in which an entry can have
    /// its date, it has the last that is not more than a month after `newest`, the time of the package.
    EntryParser(Zone zone, std::optional<Time> newest, std::shared_ptr<const LogForms> otherForms = nullptr);

    /// Fills `entry` with a line, without a CR at its end. Returns false for a line without a time: `entry`
    /// then has only the line as its text.
    bool parse(std::string_view line, LogEntry& entry) const;

    /// Reads an entry with the lines that belong to it.
    LogEntry parseLines(std::string_view lines) const;

private:
    Time resolve(const SyslogTime& time) const;
    std::optional<Time> resolve(std::string_view text) const;
    bool parseSyslog(std::string_view line, LogEntry& entry) const;
    bool parseOther(std::string_view line, LogEntry& entry) const;

    Zone boardZone;
    std::chrono::local_seconds latest;
    std::shared_ptr<const LogForms> forms;
};

}  // namespace Report
