#include "IdleCost.hpp"

#include <csignal>
#include <ctime>
#include <stdexcept>
#include <thread>

#include <sys/wait.h>

#include "Program.hpp"

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

Milliseconds processorTime(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        throw std::runtime_error("cannot read the processor time");
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

IdleCost measureIdleCost(const std::vector<std::string>& command, std::chrono::seconds period) {
    constexpr int rounds = 3;
    const pid_t child = startProgram(command);
    std::this_thread::sleep_for(period * 3 / 2);  // both measurements fall in the middle of a round
    const Milliseconds before = processorTime(child);
    std::this_thread::sleep_for(period * rounds);
    const Milliseconds after = processorTime(child);
    const auto memory = static_cast<double>(memoryKiB(child));
    if (waitpid(child, nullptr, WNOHANG) != 0) {
        throw std::runtime_error("ended early: " + command.front());
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    constexpr double kiBPerMiB = 1024;
    return {(after - before).count() / rounds, memory / kiBPerMiB};
}
