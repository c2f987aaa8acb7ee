#include "ChildProcess.hpp"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

ChildProcess::ChildProcess(const std::function<bool()>& work) : pid(::fork()) {
    if (pid == 0) {
        ::setpgid(0, 0);  // the kernel sends SIGHUP to an orphaned process group with a stopped member
        // An exception must not reach the test program's loop, which would continue in the child.
        const auto confined = [&work]() noexcept { return work(); };
        ::_exit(confined() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
}

ChildProcess::~ChildProcess() {
    if (!ended) {
        send(SIGKILL);
        wait(0);
    }
}

void ChildProcess::send(int signal) const {
    ::kill(pid, signal);
}

bool ChildProcess::succeeds() {
    const int status = wait(0);
    return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

bool ChildProcess::endsBy(int signal) {
    const int status = wait(0);
    return WIFSIGNALED(status) && WTERMSIG(status) == signal;
}

bool ChildProcess::stops() {
    return WIFSTOPPED(wait(WUNTRACED));
}

int ChildProcess::wait(int options) {
    int status = 0;
    while (::waitpid(pid, &status, options) == -1 && errno == EINTR) {
    }
    ended = !WIFSTOPPED(status);
    return status;
}
