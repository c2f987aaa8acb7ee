#include "Spawn.hpp"

#include <cerrno>
#include <csignal>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Korvel {
namespace {

/// Sets the signal dispositions and mask for waiting, from construction to destruction. Blocks SIGCHLD, so
/// that no handler reaps the child.
class WaitSignalGuard {
public:
    WaitSignalGuard() {
        struct sigaction ignore {};
        ignore.sa_handler = SIG_IGN;
        ::sigaction(SIGINT, &ignore, &interrupt);
        ::sigaction(SIGQUIT, &ignore, &quit);
        sigset_t blocked{};
        sigemptyset(&blocked);
        sigaddset(&blocked, SIGCHLD);
        ::sigprocmask(SIG_BLOCK, &blocked, &mask);
    }
    WaitSignalGuard(const WaitSignalGuard&) = delete;
    WaitSignalGuard& operator=(const WaitSignalGuard&) = delete;
    WaitSignalGuard(WaitSignalGuard&&) = delete;
    WaitSignalGuard& operator=(WaitSignalGuard&&) = delete;
    ~WaitSignalGuard() {
        ::sigaction(SIGINT, &interrupt, nullptr);
        ::sigaction(SIGQUIT, &quit, nullptr);
        ::sigprocmask(SIG_SETMASK, &mask, nullptr);
    }

    /// Makes a spawned program start with the previous dispositions and mask.
    void restoreIn(posix_spawnattr_t& attributes) const {
        sigset_t defaults{};
        sigemptyset(&defaults);
        if (interrupt.sa_handler != SIG_IGN) {
            sigaddset(&defaults, SIGINT);
        }
        if (quit.sa_handler != SIG_IGN) {
            sigaddset(&defaults, SIGQUIT);
        }
        ::posix_spawnattr_setsigdefault(&attributes, &defaults);
        ::posix_spawnattr_setsigmask(&attributes, &mask);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }

private:
    struct sigaction interrupt {};
    struct sigaction quit {};
    sigset_t mask{};
};

/// Returns 0, or the errno value if the program cannot be started.
int start(const char* path, const char* const* argv, const WaitSignalGuard& signals, pid_t& child) {
    posix_spawnattr_t attributes{};
    int reason = ::posix_spawnattr_init(&attributes);
    if (reason == 0) {
        signals.restoreIn(attributes);
        // As exec, posix_spawn() does not modify the arguments.
        reason = ::posix_spawn(&child, path, nullptr, &attributes, const_cast<char* const*>(argv), environ);
        ::posix_spawnattr_destroy(&attributes);
    }
    return reason;
}

}  // namespace

int spawnAndWait(const char* path, const char* const* argv) {
    pid_t child = -1;
    int status = -1;
    int reason = 0;
    {
        const WaitSignalGuard signals;
        reason = start(path, argv, signals, child);
        if (reason == 0 && Base::uninterrupted([&] { return ::waitpid(child, &status, 0); }) != child) {
            reason = errno;
            status = -1;
        }
    }
    if (reason != 0) {
        errno = reason;
    }
    return status;
}

}  // namespace Korvel
