#pragma once

#include <sys/types.h>

namespace Boardsim {

/// Gives the terminal back at the end. A shell on the board takes it for itself and cannot return it,
/// since the process group that had it before is none of the board's.
class TerminalKeeper {
public:
    TerminalKeeper();
    TerminalKeeper(const TerminalKeeper&) = delete;
    TerminalKeeper& operator=(const TerminalKeeper&) = delete;
    TerminalKeeper(TerminalKeeper&&) = delete;
    TerminalKeeper& operator=(TerminalKeeper&&) = delete;
    ~TerminalKeeper();

    /// Whether this program has a terminal at all, in the foreground or not.
    static bool hasTerminal();

private:
    pid_t foreground;  // -1 without a terminal
};

}  // namespace Boardsim
