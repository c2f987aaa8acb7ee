#pragma once

#include <string>
#include <vector>

#include <spawn.h>
#include <sys/types.h>

namespace Boardsim {

/// What a child process is to begin with, and its beginning. Apart from what is said here it gets the
/// environment, the standard streams and the ignored signals of this process, no other descriptor, and no
/// blocked signal.
class ChildProcess {
public:
    ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    /// The child gets `descriptor` under the number `number`, which may be the same.
    void give(int descriptor, int number);

    /// The child's descriptor `number` is /dev/null.
    void silence(int number);

    /// The child leads a process group of its own, so that Ctrl-C does not reach it.
    void leaveProcessGroup();

    /// Starts `program` (looked for in PATH where its name has no slash) and returns its id; the caller
    /// waits for it. `arguments` begin with the program's name for itself. Throws std::system_error with
    /// the reason where the program cannot be run.
    pid_t start(const std::string& program, std::vector<std::string> arguments);

private:
    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
    short flags = POSIX_SPAWN_SETSIGMASK;
};

}  // namespace Boardsim
