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

/// How long the command may go on after a signal from the host.
constexpr std::chrono::seconds grace{2};

constexpr int signalledStatus = 128;  // a shell's convention, like those two
constexpr int notFoundStatus = 127;
constexpr int notRunnableStatus = 126;

/// Uses up the low process ids: on a board they are taken, and peers have netlink port ids among them.
/// Threads take their ids from the same row, and are quicker than processes.
void skipLowProcessIds() {
    constexpr pid_t lastSkipped = 300;
    for (pid_t latest = 0; latest < lastSkipped;) {
        std::thread([&] { latest = ::gettid(); }).join();
    }
}

/// Undoes what the host's side did to outlive Ctrl-C; children are to begin as usual, and the first
/// process of a sandbox is spared these signals anyway.
void restoreSignals() {
    for (const int each : {SIGINT, SIGTERM}) {
        std::signal(each, SIG_DFL);
    }
}

/// Starts the command. Where it cannot be run, says so and gives the exit status for it in `status`.
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

/// Reaps every process that has ended. The exit status of `command`, once it is among them.
std::optional<int> reap(pid_t command) {
    std::optional<int> result;
    int status = 0;
    for (pid_t ended = 0; (ended = ::waitpid(-1, &status, WNOHANG)) > 0;) {
        if (ended == command) {
            result = WIFEXITED(status) ? WEXITSTATUS(status) : signalledStatus + WTERMSIG(status);
        }
    }
    return result;
}

/// What is left of the time until `end`, as poll() takes it; -1 without an end.
int remaining(std::optional<Clock::time_point> end) {
    if (!end) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

/// Waits until the command has ended, or the host has, or the host's signal did not end it in time.
int accompanyCommand(pid_t command, const Base::UniqueFd& childSignals, const ControlLine& line) {
    std::optional<Clock::time_point> end;
    int lateStatus = 0;
    std::array<pollfd, 2> waits{{{childSignals.get(), POLLIN, 0}, {line.descriptor(), POLLIN, 0}}};
    while (
        Base::checked(Base::uninterrupted([&] { return ::poll(waits.data(), waits.size(), remaining(end)); }),
                      "poll") > 0) {
        if (waits[0].revents != 0) {
            readSignal(childSignals);
            if (const auto status = reap(command)) {
                return *status;
            }
        }
        if (waits[1].revents != 0) {
            const auto signal = line.receive();
            if (!signal) {
                return signalledStatus + SIGHUP;  // nobody will read it
            }
            ::kill(command, *signal);
            end = Clock::now() + grace;
            lateStatus = signalledStatus + *signal;
        }
    }
    return lateStatus;
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
    return process ? accompanyCommand(*process, childSignals, line) : status;
}

}  // namespace Boardsim
