#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "BoardRoot.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A running board of this user, seen from the host or from the board itself.
class RunningBoard {
public:
    /// All running boards, sorted by process id. Boards that end meanwhile are left out.
    static std::vector<RunningBoard> all();

    /// Id of the process that the user started and can kill. Seen from the board, the id of its first
    /// process.
    pid_t pid() const { return launcher; }

    /// The board's command, as one printable line.
    const std::string& command() const { return commandText; }

    /// As in 2026-11-21T10:15:02Z.
    const std::string& startTime() const { return start; }

    const BoardRoot& files() const { return root; }

    /// Id of the board's process that was started under exactly this name without arguments; 0 if there is
    /// none.
    pid_t findProcess(const std::string& name) const;

    /// Readable when the board has ended.
    int endDescriptor() const { return end.get(); }

private:
    explicit RunningBoard(pid_t firstProcess);

    BoardRoot root;
    Base::UniqueFd end;
    pid_t launcher;
    std::string pidNamespace;
    std::string commandText;
    std::string start;
};

}  // namespace Boardsim
