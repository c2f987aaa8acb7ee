#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "BoardRoot.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A board that this user runs, seen from wherever processes see it: the host, or the board itself.
class RunningBoard {
public:
    /// All of them, the oldest first as far as process ids tell. Those that end meanwhile are left out.
    static std::vector<RunningBoard> all();

    /// Id of the process that people started and can end; on the board itself that of its first process.
    pid_t pid() const { return keeper; }

    /// What runs on it, as one printable line.
    const std::string& command() const { return words; }

    /// When it began, by the clock of the world (UTC).
    const std::string& startTime() const { return start; }

    /// What is in its files.
    const BoardRoot& files() const { return root; }

    /// Id of its process that was started under exactly this name without arguments; 0 where there is none.
    pid_t findProcess(const std::string& name) const;

    /// Readable when the board has ended.
    int endDescriptor() const { return end.get(); }

private:
    explicit RunningBoard(pid_t firstProcess);

    BoardRoot root;
    Base::UniqueFd end;
    pid_t keeper;
    std::string processTable;
    std::string words;
    std::string start;
};

}  // namespace Boardsim
