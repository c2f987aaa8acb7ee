#pragma once

#include <cstddef>
#include <string>

#include "SmLog.hpp"

/// A shared-memory log to which the test writes. It knows every byte of the log, of all writers.
class RecordedLog {
public:
    /// Bytes of the longest entry.
    static constexpr std::size_t largest = 4096;

    /// Empties the log `logName` or creates it. Throws if the log cannot be opened.
    explicit RecordedLog(const char* logName);

    /// Writes `count` entries of `size` bytes each, line end included. Each has its own number, starting from
    /// 0.
    void write(unsigned count, std::size_t size = largest);

    /// The whole text of the log since construction. Between two calls, other writers must write less than
    /// the log keeps.
    const std::string& text();

private:
    void writeEntry(std::size_t size);

    SmLog* log;
    unsigned position = 0;
    unsigned next = 0;
    std::string recorded;
};
