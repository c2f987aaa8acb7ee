#include "PeakResident.hpp"

#include <csignal>
#include <stdexcept>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Program.hpp"

namespace {

constexpr int stoppedAtExit = SIGTRAP | (PTRACE_EVENT_EXIT << 8);

bool endedAsExpected(int status, const Job& job) {
    return job.seconds == 0 ? status == 0 : WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
}

/// The signal to deliver to a stopped process. 0 if the stop is one of the tracer's own.
int pendingSignal(int status) {
    const int signal = WSTOPSIG(status);
    return signal == SIGTRAP ? 0 : signal;
}

}  // namespace

// Stops the process at its exit, because sampling would miss short jobs. The figure of wait4() is no use: it
// includes the memory of this program, which the child has until it calls execve().
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
        if (status >> 8 == stoppedAtExit) {
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
