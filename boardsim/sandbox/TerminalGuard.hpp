#pragma once

#include <sys/types.h>

namespace Boardsim {

/// Takes the terminal back at the end. A shell on the board makes its own process group the foreground group.
/// It cannot restore the old group, which is outside the sandbox.
class TerminalGuard {
public:
    TerminalGuard();
    TerminalGuard(const TerminalGuard&) = delete;
    TerminalGuard& operator=(const TerminalGuard&) = delete;
    TerminalGuard(TerminalGuard&&) = delete;
    TerminalGuard& operator=(TerminalGuard&&) = delete;
    ~TerminalGuard();

    /// True if this program has a terminal, in the foreground or not.
    static bool hasTerminal();

private:
    pid_t foreground;  // -1 without a terminal
};

}  // namespace Boardsim
