#pragma once

#include <string>

/// A shared-memory log to which the board's processes keep writing. So the collected text depends on the
/// moment.
class GrowingLog {
public:
    /// Records the current text of the log `logName`.
    explicit GrowingLog(const char* logName);

    /// The current text of the log.
    std::string text() const;

    /// The longest text in `output` that a reader can have read since construction. If there is none, the
    /// text of the log at construction.
    std::string versionIn(const std::string& output) const;

private:
    const char* name;
    std::string before;
};
