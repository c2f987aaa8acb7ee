#pragma once

#include <cerrno>
#include <cstring>
#include <iostream>

#include "VerboseMode.hpp"

namespace Korvel {

/// Stores errno of the first failed write to standard output. Call it immediately after each write.
void recordOutputFailure();

/// Flushes standard output. Call it before starting a child process and before waiting, so that all output
/// appears in order.
void flushStandardOutput();

/// Flushes standard output. Reports on standard error, and returns false, if any output of this run was lost.
[[nodiscard]] bool finishStandardOutput();

/// Writes the pieces to standard output, without adding a line end.
template <typename... Pieces>
void print(const Pieces&... pieces) {
    (std::cout << ... << pieces);
    recordOutputFailure();
}

/// Prints one line on standard output, in verbose mode only.
template <typename... Pieces>
void progress(const Pieces&... pieces) {
    if (isVerboseMode()) {
        print(pieces..., '\n');
    }
}

/// Writes one line to standard error, after flushing standard output. Needs no memory. Always returns false,
/// for use as `return fail("Get Port: ...");`
template <typename... Pieces>
bool fail(const Pieces&... pieces) {
    flushStandardOutput();
    std::cerr.clear();            // an earlier failure must not suppress this line
    std::cerr << std::nounitbuf;  // one write, so that lines of several processes do not mix
    (std::cerr << ... << pieces) << '\n' << std::flush << std::unitbuf;
    return false;
}

/// As fail(), with the text of errno appended. Call it immediately after the failed system call.
template <typename... Pieces>
bool failErrno(const Pieces&... pieces) {
    const int reason = errno;  // before any output changes it
    return fail(pieces..., std::strerror(reason));
}

/// As failErrno(), with the number of errno and ": " before its text.
template <typename... Pieces>
bool failErrnoNumber(const Pieces&... pieces) {
    const int reason = errno;
    return fail(pieces..., reason, ": ", std::strerror(reason));
}

}  // namespace Korvel
