#pragma once

#include <string_view>

/// A log line in memory whose second half cannot be read: copying it into a log raises a signal of the
/// test's choice in the middle of the copying, with the log's lock held. A process that goes on after the
/// signal copies the rest. One at a time in a process, for as long as it lives.
class TrapLine {
public:
    /// A line of `length` bytes, the last one a line end.
    TrapLine(std::size_t length, int signal);

    std::string_view line() const { return text; }

private:
    static void spring(int);

    std::string_view text;
};
