#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "LogRing.hpp"

namespace HostBoard {

/// One entry as it stands in a log, a line of this form with the time of its making in UTC:
///
///     2031-05-17T08:15:00.123456Z LEVEL TAG: TEXT
///
/// It stays one line whatever it is made of: line ends at the end of TEXT are dropped, all others become
/// blanks, and so do zero bytes. What goes beyond LogRing::maxEntry is cut off.
class LogEntry {
public:
    /// `format` and `arguments` make the text, as for vprintf; a null `tag` or `format` counts as empty.
    LogEntry(int level, const char* tag, const char* format, std::va_list arguments)
        __attribute__((format(printf, 4, 0)));

    /// With its line end. Lives as long as the entry.
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
