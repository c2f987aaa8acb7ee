#pragma once

#include <cstdarg>

/// Identifies a program, or a part of a log, among the users of a log; the library defines the values.
using AppID = unsigned int;

#define KORVEL_PLATFORM_EXPORT __attribute__((visibility("default")))

/// Client of a shared-memory log, from the board's library "libnetfpsmlog.so". The order of the virtual
/// functions is part of the library's binary interface.
class KORVEL_PLATFORM_EXPORT SmLog {
public:
    /// Returns the process's client of the log `name` for the program `app`, or null if the log is not
    /// available. The library owns the client and never frees it.
    static SmLog* getClientInstance(const char* name, AppID app);

    /// Appends one entry, formatted as by printf; it needs no line end.
    virtual void write(int level, const char* tag, const char* format, ...)
        __attribute__((format(printf, 4, 5))) = 0;

    /// As write(), with an argument list.
    virtual void vwrite(int level, const char* tag, const char* format, std::va_list arguments)
        __attribute__((format(printf, 4, 0))) = 0;

    /// Copies log text from position `start` (0: the oldest kept entry) into `buffer` of `size` bytes, and
    /// adds a terminating zero if it fits. Returns the position after the last copied byte, which is the
    /// `start` of the next read, or `start` if there is nothing new. The library defines the values of `app`
    /// and `mode`.
    virtual unsigned read(char* buffer, unsigned size, AppID app, unsigned start, unsigned mode) = 0;

    /// Returns true if entries between `lastPosition` and `newPosition` were overwritten before the read that
    /// returned `newPosition` could copy them.
    virtual bool overlap(unsigned lastPosition, unsigned newPosition) = 0;

    SmLog(const SmLog&) = delete;
    SmLog& operator=(const SmLog&) = delete;
    SmLog(SmLog&&) = delete;
    SmLog& operator=(SmLog&&) = delete;

protected:
    SmLog() = default;
    ~SmLog() = default;
};
