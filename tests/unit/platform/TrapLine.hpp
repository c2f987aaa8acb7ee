#pragma once

#include <string_view>

/// A log line in memory whose second half is unreadable. Copying it into a log raises a signal of the test's
/// choice in the middle, while the log is locked. A process that survives the signal copies the rest. Only
/// one at a time in a process.
class TrapLine {
public:
    /// A line of `length` bytes, line end included.
    TrapLine(std::size_t length, int signal);

    std::string_view line() const { return text; }

private:
    static void spring(int);

    std::string_view text;
};
