#include "RunningBoard.hpp"

#include <system_error>

#include <sys/syscall.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "PrintableText.hpp"
#include "ProcessTable.hpp"
#include "SystemCall.hpp"
#include "UtcText.hpp"

namespace Boardsim {
namespace {

/// True for the first process of a board: init LINE COMMAND...
bool isFirstProcess(pid_t process) {
    const std::vector<std::string> words = ProcessTable::commandLine(process);
    return words.size() > 2 && words[0] == BoardPaths::init && ProcessTable::isOwn(process) &&
           ProcessTable::innermostId(process) == 1;
}

/// A descriptor that is readable when the process has exited. Not pidfd_open(): its header in Debian 12 is
/// only for C.
Base::UniqueFd openProcess(pid_t process) {
    return Base::UniqueFd(
        static_cast<int>(Base::checked(::syscall(SYS_pidfd_open, process, 0), "pidfd_open")));
}

/// bubblewrap runs between boardsim and the first process. Both are invisible from the board.
pid_t launcherOf(pid_t firstProcess) {
    const pid_t bubblewrap = ProcessTable::parent(firstProcess);
    return bubblewrap == 0 ? firstProcess : ProcessTable::parent(bubblewrap);
}

std::string commandOf(pid_t firstProcess) {
    const std::vector<std::string> words = ProcessTable::commandLine(firstProcess);
    std::string text;
    for (std::size_t i = 2; i < words.size(); ++i) {
        text += (i == 2 ? "" : " ") + words[i];
    }
    return printable(text);
}

std::string startOf(pid_t firstProcess) {
    return utcText(ProcessTable::startTime(firstProcess).time_since_epoch().count()) + "Z";
}

}  // namespace

std::vector<RunningBoard> RunningBoard::all() {
    std::vector<RunningBoard> boards;
    for (const pid_t process : ProcessTable::ids()) {
        try {
            if (isFirstProcess(process)) {
                boards.push_back(RunningBoard(process));
            }
        } catch (const std::system_error&) {
            continue;  // it has just ended
        }
    }
    return boards;
}

RunningBoard::RunningBoard(pid_t firstProcess)
    : root(firstProcess),
      end(openProcess(firstProcess)),
      launcher(launcherOf(firstProcess)),
      pidNamespace(ProcessTable::pidNamespace(firstProcess)),
      commandText(commandOf(firstProcess)),
      start(startOf(firstProcess)) {
}

pid_t RunningBoard::findProcess(const std::string& name) const {
    for (const pid_t process : ProcessTable::ids()) {
        try {
            if (ProcessTable::commandLine(process) == std::vector{name} &&
                ProcessTable::pidNamespace(process) == pidNamespace) {
                return ProcessTable::innermostId(process);
            }
        } catch (const std::system_error&) {
            continue;  // it has just ended, or is another user's
        }
    }
    return 0;
}

}  // namespace Boardsim
