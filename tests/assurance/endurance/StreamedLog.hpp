#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "SmLog.hpp"

/// A shared-memory log to which the test writes any number of bytes. It knows how many bytes all writers have
/// written, and what the latest of them are. Offsets count these bytes.
class StreamedLog {
public:
    static constexpr std::size_t kept = std::size_t{2} << 20;  ///< the log keeps slightly less
    static constexpr std::size_t largest = 4096;               ///< bytes of the longest entry

    /// Empties the log `logName` or creates it. Throws if the log cannot be opened.
    explicit StreamedLog(const char* logName);

    /// Writes entries of different lengths, `bytes` or slightly more in all.
    void write(std::size_t bytes);

    /// Takes note of what others wrote. Between two calls, they must write less than the log keeps.
    void update();

    std::uint64_t end() const { return endOffset; }

    /// The offset of the oldest entry that the log still has.
    std::uint64_t oldest();

    /// The latest bytes. Throws if they are too old to be known, or not written yet.
    std::string_view between(std::uint64_t from, std::uint64_t to) const;

private:
    void writeEntry();
    std::string_view readFrom(unsigned start);

    SmLog* log;
    unsigned position = 0;
    unsigned number = 0;
    std::string buffer;
    std::string latest;
    std::uint64_t endOffset = 0;
};
