#pragma once

#include <sys/types.h>

namespace Boardsim {

/// Takes the terminal back at the end. A shell on the board makes its own process group the foreground group.
/// It cannot restore the old group, which is outside the sandbox.
class TerminalKeeper {
public:
    TerminalKeeper();
    TerminalKeeper(const TerminalKeeper&) = delete;
    TerminalKeeper& operator=(const TerminalKeeper&) = delete;
    TerminalKeeper(TerminalKeeper&&) = delete;
    TerminalKeeper& operator=(TerminalKeeper&&) = delete;
    ~TerminalKeeper();

    /// True if this program has a terminal, in the foreground or not.
    static bool hasTerminal();

private:
    pid_t foreground;  // -1 without a terminal
};

}  // namespace Boardsim
