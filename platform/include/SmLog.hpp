#pragma once

#include <cstdarg>

/// Number of a program, or of a log's part, among those that share a log; its meanings are the library's.
using AppID = unsigned int;

#define KORVEL_PLATFORM_EXPORT __attribute__((visibility("default")))

/// Client of a shared-memory log, from the board's library "libnetfpsmlog.so".
/// The order of the virtual operations is the library's binary interface.
class KORVEL_PLATFORM_EXPORT SmLog {
public:
    /// The process's client of the log `name` for the program `app`. The library owns it and never frees
    /// it. Null where the log cannot be had.
    static SmLog* getClientInstance(const char* name, AppID app);

    /// Appends one entry. `format` and what follows are as for printf; the entry needs no line end.
    virtual void write(int level, const char* tag, const char* format, ...)
        __attribute__((format(printf, 4, 5))) = 0;

    /// As write(), with the arguments in a list.
    virtual void vwrite(int level, const char* tag, const char* format, std::va_list arguments)
        __attribute__((format(printf, 4, 0))) = 0;

    /// Copies log text into `buffer` of `size` bytes, from position `start` on (0: from the oldest entry
    /// kept), with a zero behind it where it fits. Returns the position behind the last byte copied, to
    /// be given as `start` of the next read; `start` itself where there is nothing new. `app` and `mode` are
    /// the library's own.
    virtual unsigned read(char* buffer, unsigned size, AppID app, unsigned start, unsigned mode) = 0;

    /// True when entries between `lastPosition` and the read that returned `newPosition` were overwritten
    /// before that read could copy them.
    virtual bool overlap(unsigned lastPosition, unsigned newPosition) = 0;

    SmLog(const SmLog&) = delete;
    SmLog& operator=(const SmLog&) = delete;
    SmLog(SmLog&&) = delete;
    SmLog& operator=(SmLog&&) = delete;

protected:
    SmLog() = default;
    ~SmLog() = default;
};
