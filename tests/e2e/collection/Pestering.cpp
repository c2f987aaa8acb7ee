#include "Pestering.hpp"

#include <chrono>
#include <csignal>
#include <thread>

#include <sys/wait.h>

namespace {

/// A zombie keeps its process id, so no other process gets the signals.
bool hasEnded(pid_t process) {
    siginfo_t info{};
    const int result = ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT);
    return result != 0 || info.si_pid == process;
}

}  // namespace

Outcome pester(Process& process, const std::vector<int>& signals) {
    for (std::size_t next = 0; !hasEnded(process.pid()); ++next) {
        ::kill(process.pid(), signals[next % signals.size()]);
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    return process.wait();
}
