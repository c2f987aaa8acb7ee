#pragma once

#include <cerrno>
#include <cstring>
#include <iostream>
#include <sstream>

#include "VerboseMode.hpp"

namespace Korvel {

/// Remembers the reason (errno) of the first write to standard output that failed.
/// To be called right after each write.
void noteOutputFailure();

/// Hands everything printed so far to the system. Due before a child process starts and before a wait, so
/// that all output lands in its order.
void flushStandardOutput();

/// Flushes, and says on standard error when anything printed by this run was lost. True when nothing was.
[[nodiscard]] bool finishStandardOutput();

/// Writes the pieces to standard output as they stand; line ends are the caller's.
template <typename... Pieces>
void print(const Pieces&... pieces) {
    (std::cout << ... << pieces);
    noteOutputFailure();
}

/// One line of progress on standard output, in verbose mode only.
template <typename... Pieces>
void progress(const Pieces&... pieces) {
    if (isVerboseMode()) {
        print(pieces..., '\n');
    }
}

/// One line on standard error, behind what was printed before. Always false, so that a caller can end
/// with `return fail("Get Port: ...");`
template <typename... Pieces>
bool fail(const Pieces&... pieces) {
    flushStandardOutput();
    std::ostringstream line;
    (line << ... << pieces) << '\n';
    std::cerr.clear();        // an earlier line that was lost is no reason to lose this one
    std::cerr << line.str();  // in one piece, so that lines of several processes do not mix
    return false;
}

/// As fail(), right after a system call, with the reason behind the pieces.
template <typename... Pieces>
bool failErrno(const Pieces&... pieces) {
    const int reason = errno;  // before any output can change it
    return fail(pieces..., std::strerror(reason));
}

/// As failErrno(), with the number of the error and ": " before the reason.
template <typename... Pieces>
bool failErrnoNumber(const Pieces&... pieces) {
    const int reason = errno;
    return fail(pieces..., reason, ": ", std::strerror(reason));
}

}  // namespace Korvel
