#include "Supervisor.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <iostream>
#include <optional>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Board.hpp"
#include "BoardPaths.hpp"
#include "ChildProcess.hpp"
#include "ControlLine.hpp"
#include "ScenarioFile.hpp"
#include "SignalDescriptor.hpp"
#include "SystemCall.hpp"

namespace Boardsim {
namespace {

using Clock = std::chrono::steady_clock;

/// The command's time to exit after a signal from the host.
constexpr std::chrono::seconds grace{2};

constexpr int notFoundStatus = 127;  // exit statuses by the convention of shells
constexpr int notRunnableStatus = 126;

/// Uses up the low process ids. On a board they are taken, and some peers use them as netlink port ids.
/// Threads take ids from the same range and start faster than processes.
void skipLowProcessIds() {
    constexpr pid_t lastSkipped = 300;
    for (pid_t latest = 0; latest < lastSkipped;) {
        std::thread([&] { latest = ::gettid(); }).join();
    }
}

/// boardsim ignores these signals on the host, and children would inherit that. Default actions do not kill
/// the first process of a PID namespace.
void restoreSignals() {
    for (const int each : {SIGINT, SIGTERM}) {
        std::signal(each, SIG_DFL);
    }
}

/// Starts the command. If it cannot be run, reports that and sets `status` to the exit status.
std::optional<pid_t> startCommand(const std::vector<std::string>& command, int& status) {
    ChildProcess child;
    try {
        return child.start(command.front(), command);
    } catch (const std::system_error& error) {
        std::cerr << "boardsim: " << error.what() << '\n';
        status = error.code() == std::errc::no_such_file_or_directory ? notFoundStatus : notRunnableStatus;
        return std::nullopt;
    }
}

/// Reaps every process that has exited. Returns the exit status of `command` if it is among them.
std::optional<int> reap(pid_t command) {
    std::optional<int> result;
    int status = 0;
    for (pid_t ended = 0; (ended = ::waitpid(-1, &status, WNOHANG)) > 0;) {
        if (ended == command) {
            result = shellStatus(status);
        }
    }
    return result;
}

/// The time until `deadline` as poll() takes it; -1 without a deadline.
int remaining(std::optional<Clock::time_point> deadline) {
    if (!deadline) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

/// Waits until the command exits, the host side exits, or the time after a forwarded signal is over.
int waitForCommand(pid_t command, const Base::UniqueFd& childSignals, const ControlLine& line) {
    std::optional<Clock::time_point> deadline;
    int timeoutStatus = 0;
    std::array<pollfd, 2> waits{{{childSignals.get(), POLLIN, 0}, {line.descriptor(), POLLIN, 0}}};
    const auto wait = [&] { return ::poll(waits.data(), waits.size(), remaining(deadline)); };
    while (Base::checked(Base::uninterrupted(wait), "poll") > 0) {
        if (waits[0].revents != 0) {
            readSignal(childSignals);
            if (const auto status = reap(command)) {
                return *status;
            }
        }
        if (waits[1].revents != 0) {
            const auto signal = line.receive();
            if (!signal) {
                return signalledStatus + SIGHUP;  // nobody reads this status
            }
            ::kill(command, *signal);
            deadline = Clock::now() + grace;
            timeoutStatus = signalledStatus + *signal;
        }
    }
    return timeoutStatus;
}

}  // namespace

int supervise(int lineDescriptor, const std::vector<std::string>& command) {
    const ControlLine line{Base::UniqueFd(lineDescriptor)};
    ::fcntl(lineDescriptor, F_SETFD, FD_CLOEXEC);
    line.send(ControlLine::up);
    restoreSignals();
    const Base::UniqueFd childSignals = openSignalDescriptor({SIGCHLD});
    Scenario scenario;
    loadScenario(BoardPaths::scenario, scenario);
    skipLowProcessIds();
    std::optional<Board> board;
    if (!scenario.bare) {
        board.emplace(scenario);
    }
    int status = 0;
    const auto process = startCommand(command, status);
    return process ? waitForCommand(*process, childSignals, line) : status;
}

}  // namespace Boardsim
