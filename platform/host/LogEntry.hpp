#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "LogRing.hpp"

namespace HostBoard {

/// One log entry: a line of the following form, with the time of construction in UTC.
///
///      2031-05-17T08:15:00.123456Z LEVEL TAG: TEXT
///
/// The entry is always a single line: trailing line ends of TEXT are removed; other line ends and zero bytes
/// become blanks. Text beyond LogRing::maxEntry is cut off.
class LogEntry {
public:
    /// Formats the text as vprintf does. A null `tag` or `format` counts as empty.
    LogEntry(int level, const char* tag, const char* format, std::va_list arguments)
        __attribute__((format(printf, 4, 0)));

    /// Includes the line end. Valid as long as the entry.
    std::string_view line() const { return {bytes.data(), size}; }

private:
    void append(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void appendList(const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));
    void appendTime();
    void finishLine();

    std::array<char, LogRing::maxEntry> bytes{};
    std::size_t size = 0;
};

}  // namespace HostBoard
