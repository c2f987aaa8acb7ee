#pragma once

#include <cstdarg>
#include <memory>

#include "LateReads.hpp"
#include "SharedLog.hpp"
#include "SmLog.hpp"

namespace HostBoard {

/// The client that programs get: formats what they write, and reads into their buffers. Programs and
/// modes all see the same log. Where the log cannot be had (somebody has kept it locked for a second, or
/// its memory was destroyed), a write drops its entry, and a read gives an empty text and returns its own
/// start position.
class SmLogClient final : public SmLog {
public:
    /// `opened` is not null.
    explicit SmLogClient(std::unique_ptr<SharedLog> opened);

    /// Entries look as LogEntry says. errno stays as it is.
    void write(int level, const char* tag, const char* format, ...) override
        __attribute__((format(printf, 4, 5)));
    void vwrite(int level, const char* tag, const char* format, std::va_list arguments) override
        __attribute__((format(printf, 4, 0)));

    /// Copies whole entries only. A start that was never returned, or whose entries are gone, counts as
    /// 0. The position returned is never 0, unless `start` is.
    unsigned read(char* buffer, unsigned size, AppID app, unsigned start, unsigned mode) override;

    bool overlap(unsigned lastPosition, unsigned newPosition) override;

    SharedLog& sharedLog() { return *log; }

private:
    std::unique_ptr<SharedLog> log;
    LateReads lateReads;
};

}  // namespace HostBoard
