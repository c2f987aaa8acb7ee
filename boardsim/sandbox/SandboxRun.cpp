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
#include "TerminalGuard.hpp"

namespace Boardsim {
namespace {

constexpr const char* installHint = "install bubblewrap (Debian, Ubuntu: apt-get install bubblewrap)";

/// Ctrl-C reaches every process at the terminal. bubblewrap must survive it, so that the command can exit
/// cleanly. The descriptor receives blocked signals even if they are ignored.
Base::UniqueFd takeSignals() {
    Base::UniqueFd signals = openSignalDescriptor({SIGINT, SIGTERM, SIGCHLD});
    for (const int each : {SIGINT, SIGTERM}) {
        std::signal(each, SIG_IGN);
    }
    std::signal(SIGCHLD, SIG_DFL);  // if ignored, the child's exit status would be lost
    return signals;
}

/// Starts bubblewrap with `line` as the sandbox's end of the control line.
pid_t startBwrap(BwrapArguments arguments, const ControlLine& line, const std::vector<std::string>& command) {
    std::vector<std::string> words{"bwrap", "--args", std::to_string(arguments.toDescriptor()), "--",
                                   BoardPaths::init};
    words.push_back(std::to_string(line.descriptor()));
    words.insert(words.end(), command.begin(), command.end());
    ChildProcess child;
    child.passDescriptor(line.descriptor(), line.descriptor());
    for (const Base::UniqueFd& data : arguments.descriptors()) {
        child.passDescriptor(data.get(), data.get());
    }
    if (!TerminalGuard::hasTerminal()) {
        // Otherwise, a command that signals its process group reaches processes of the host. At a terminal,
        // all stay in one group: it is the job for Ctrl-C and Ctrl-Z.
        child.startProcessGroup();
    }
    try {
        return child.start("bwrap", words);
    } catch (const std::system_error& error) {
        throw SandboxError("no sandbox: bwrap cannot be run: " + error.code().message() + "\n" + installHint);
    }
}

/// The exit status of the child, if it has exited.
std::optional<int> exitStatusOf(pid_t child) {
    int status = 0;
    if (::waitpid(child, &status, WNOHANG) != child) {
        return std::nullopt;
    }
    return shellStatus(status);
}

/// Forwards signals until the child has exited. Returns its exit status.
int forwardSignals(pid_t child, const Base::UniqueFd& signals, const ControlLine& line) {
    for (;;) {
        const int signal = readSignal(signals);
        if (signal != SIGCHLD) {
            line.send(static_cast<unsigned char>(signal));
        } else if (const auto status = exitStatusOf(child)) {
            return *status;
        }
    }
}

}  // namespace

int runInSandbox(const Scenario& scenario, const SshAccess& ssh, std::vector<std::string> command) {
    const ProgramTree tree = ProgramTree::ofThisProgram();
    BwrapArguments arguments = sandboxArguments(scenario, ssh, tree);
    if (ssh.on) {
        command = {BoardPaths::sshServer};
    } else if (command.empty()) {
        command = {"bash", "--norc"};
        arguments.add({"--setenv", "PS1", "board# "});
    }
    command.front() = tree.commandOnBoard(command.front());
    const TerminalGuard terminal;
    if (::geteuid() == 0) {
        protectHostDevices();
    }
    const Base::UniqueFd signals = takeSignals();
    auto [line, sandboxEnd] = ControlLine::openPair();
    const pid_t child = startBwrap(std::move(arguments), sandboxEnd, command);
    sandboxEnd.close();
    const int status = forwardSignals(child, signals, line);
    if (line.receive() != ControlLine::up) {
        throw SandboxError(sandboxRefusal());
    }
    return status;
}

}  // namespace Boardsim
