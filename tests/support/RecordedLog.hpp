#pragma once

#include <cstddef>
#include <string>

#include "SmLog.hpp"

/// A shared-memory log that the test writes to, and whose every byte it knows, whoever wrote it.
class RecordedLog {
public:
    /// Bytes of the longest entry.
    static constexpr std::size_t largest = 4096;

    /// Empties the log `logName`; makes it where it is missing. Throws where it cannot be had.
    explicit RecordedLog(const char* logName);

    /// Writes `count` entries of `size` bytes each, line end included. Each has a number of its own, counted
    /// from 0.
    void write(unsigned count, std::size_t size = largest);

    /// Everything that was written to the log since construction. Others may have written less than the log
    /// keeps since this object was last used.
    const std::string& text();

private:
    void writeEntry(std::size_t size);

    SmLog* log;
    unsigned position = 0;
    unsigned next = 0;
    std::string recorded;
};
