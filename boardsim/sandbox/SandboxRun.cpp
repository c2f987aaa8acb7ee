#include "SandboxRun.hpp"

#include <csignal>
#include <optional>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "ChildProcess.hpp"
#include "ControlLine.hpp"
#include "HostDevices.hpp"
#include "ProgramTree.hpp"
#include "Sandbox.hpp"
#include "SandboxRefusal.hpp"
#include "SignalDescriptor.hpp"
#include "TerminalKeeper.hpp"

namespace Boardsim {
namespace {

constexpr const char* missingRemedy = "install bubblewrap (Debian, Ubuntu: apt-get install bubblewrap)";

/// Ctrl-C reaches every process at the terminal at once; bubblewrap is to outlive it, so that the command
/// can end in good order. Blocked signals arrive at their descriptor although they are ignored.
Base::UniqueFd takeSignals() {
    Base::UniqueFd signals = openSignalDescriptor({SIGINT, SIGTERM, SIGCHLD});
    for (const int each : {SIGINT, SIGTERM}) {
        std::signal(each, SIG_IGN);
    }
    std::signal(SIGCHLD, SIG_DFL);  // ignored, it would take the child's exit status away
    return signals;
}

/// Starts bubblewrap; of the line's two ends `line` becomes the sandbox's.
pid_t startBwrap(BwrapArguments arguments, const ControlLine& line, const std::vector<std::string>& command) {
    std::vector<std::string> words{"bwrap", "--args", std::to_string(arguments.seal()), "--",
                                   BoardPaths::init};
    words.push_back(std::to_string(line.descriptor()));
    words.insert(words.end(), command.begin(), command.end());
    ChildProcess child;
    child.give(line.descriptor(), line.descriptor());
    for (const Base::UniqueFd& data : arguments.descriptors()) {
        child.give(data.get(), data.get());
    }
    if (!TerminalKeeper::hasTerminal()) {
        // Or a command that sends a signal to its process group reaches the host's processes in it. At a
        // terminal they stay together: the group is the job that Ctrl-C and Ctrl-Z are meant for.
        child.leaveProcessGroup();
    }
    try {
        return child.start("bwrap", words);
    } catch (const std::system_error& error) {
        throw SandboxError("no sandbox: bwrap cannot be run: " + error.code().message() + "\n" +
                           missingRemedy);
    }
}

/// The exit status of the child once it has ended.
std::optional<int> endOf(pid_t child) {
    int status = 0;
    if (::waitpid(child, &status, WNOHANG) != child) {
        return std::nullopt;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Passes signals on until the child has ended. Returns its exit status.
int accompany(pid_t child, const Base::UniqueFd& signals, const ControlLine& line) {
    for (;;) {
        const int signal = readSignal(signals);
        if (signal != SIGCHLD) {
            line.send(static_cast<unsigned char>(signal));
        } else if (const auto status = endOf(child)) {
            return *status;
        }
    }
}

}  // namespace

int runInSandbox(const Scenario& scenario, std::vector<std::string> command) {
    const ProgramTree tree = ProgramTree::ofThisProgram();
    BwrapArguments arguments = sandboxArguments(scenario, tree);
    if (command.empty()) {
        command = {"bash", "--norc"};
        arguments.add({"--setenv", "PS1", "board# "});
    }
    command.front() = tree.commandOnBoard(command.front());
    const TerminalKeeper terminal;
    if (::geteuid() == 0) {
        protectHostDevices();
    }
    const Base::UniqueFd signals = takeSignals();
    auto [line, sandboxEnd] = ControlLine::openPair();
    const pid_t child = startBwrap(std::move(arguments), sandboxEnd, command);
    sandboxEnd.close();
    const int status = accompany(child, signals, line);
    if (line.receive() != ControlLine::up) {
        throw SandboxError(sandboxRefusal());
    }
    return status;
}

}  // namespace Boardsim
