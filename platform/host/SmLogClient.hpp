#pragma once

#include <cstdarg>
#include <memory>

#include "LateReads.hpp"
#include "SharedLog.hpp"
#include "SmLog.hpp"

namespace HostBoard {

/// The log client that programs use: formats entries, and reads into the caller's buffer. All application
/// numbers and modes share one log. If the log is not available (locked for a second, or destroyed), a write
/// drops its entry, and a read stores an empty text and returns its start position.
class SmLogClient final : public SmLog {
public:
    /// `opened` is not null.
    explicit SmLogClient(std::unique_ptr<SharedLog> opened);

    /// Writes an entry in the format of LogEntry. Preserves errno.
    void write(int level, const char* tag, const char* format, ...) override
        __attribute__((format(printf, 4, 5)));
    void vwrite(int level, const char* tag, const char* format, std::va_list arguments) override
        __attribute__((format(printf, 4, 0)));

    /// Copies only whole entries. A `start` that was never returned, or whose entries are gone, counts as 0.
    /// The returned position is 0 only if `start` is.
    unsigned read(char* buffer, unsigned size, AppID app, unsigned start, unsigned mode) override;

    bool overlap(unsigned lastPosition, unsigned newPosition) override;

    SharedLog& sharedLog() { return *log; }

private:
    std::unique_ptr<SharedLog> log;
    LateReads lateReads;
};

}  // namespace HostBoard
