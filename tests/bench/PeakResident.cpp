#include "PeakResident.hpp"

#include <csignal>
#include <stdexcept>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Program.hpp"

namespace {

constexpr int isAboutToExit = SIGTRAP | (PTRACE_EVENT_EXIT << 8);

bool endedAsExpected(int status, const Job& job) {
    return job.seconds == 0 ? status == 0 : WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
}

/// The signal that a traced process stopped for and is to get; 0 for the tracer's own stops.
int pendingSignal(int status) {
    const int signal = WSTOPSIG(status);
    return signal == SIGTRAP ? 0 : signal;
}

}  // namespace

// The process is stopped at its exit: a look at it from time to time would miss short jobs. wait4() does not
// tell either, since its figure includes the memory of this program, which the child has until it calls
// execve().
long peakResidentKiB(const Job& job) {
    const pid_t child = startProgram(job.command, [&job] {
        alarm(job.seconds);
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    });
    long peak = 0;
    int status = 0;
    waitpid(child, &status, 0);  // after execve()
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACEEXIT);
    while (WIFSTOPPED(status)) {
        if (status >> 8 == isAboutToExit) {
            peak = statusKiB(child, {"VmHWM:"});
        }
        ptrace(PTRACE_CONT, child, nullptr, pendingSignal(status));
        waitpid(child, &status, 0);
    }
    if (!endedAsExpected(status, job)) {
        throw std::runtime_error("failed: " + job.command.back());
    }
    return peak;
}
