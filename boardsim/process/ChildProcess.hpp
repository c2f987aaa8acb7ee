#pragma once

#include <string>
#include <vector>

#include <spawn.h>
#include <sys/types.h>

namespace Boardsim {

/// A child process to start. It inherits the environment, the standard streams and the ignored signals, but
/// no other descriptor and no blocked signal.
class ChildProcess {
public:
    ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    /// The child inherits `descriptor` as `number`. The two may be equal.
    void passDescriptor(int descriptor, int number);

    /// Opens /dev/null as the child's descriptor `number`.
    void openNull(int number);

    /// Puts the child into a process group of its own, so that Ctrl-C does not reach it.
    void startProcessGroup();

    /// Starts `program` and returns its process id; the caller waits for it. A name without a slash is
    /// searched in PATH. `arguments` start with argv[0]. Throws std::system_error if the program cannot be
    /// run.
    pid_t start(const std::string& program, std::vector<std::string> arguments);

private:
    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
    short flags = POSIX_SPAWN_SETSIGMASK;
};

/// A status of waitpid() as a shell reports it: the exit status, or 128 + N if signal N killed the process.
int shellStatus(int waitStatus);

/// What shells add to the number of the signal that killed a process.
constexpr int signalledStatus = 128;

}  // namespace Boardsim
