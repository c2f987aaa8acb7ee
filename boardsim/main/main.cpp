#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "CommandLine.hpp"
#include "HelpText.hpp"
#include "PeerCatalog.hpp"
#include "PeerProcess.hpp"
#include "SandboxRun.hpp"
#include "SshServer.hpp"
#include "StatusCommand.hpp"
#include "Supervisor.hpp"
#include "UsageError.hpp"
#include "WholeNumber.hpp"

namespace Boardsim {
namespace {

constexpr int usageStatus = 2;
constexpr int noBoardStatus = 3;

/// As the sandbox's first process: init LINE COMMAND...
int runInit(int argc, char** argv) {
    return supervise(wholeNumber<int>(argv[1]).value_or(-1), {argv + 2, argv + argc});
}

/// As boardsim on the host.
int runBoardsim(int argc, char** argv) {
    // The board must not inherit the caller's descriptors. They stay open for this program, because its
    // arguments may name them (/dev/fd/N).
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    if (argc > 1 && argv[1] == std::string_view("status")) {
        return runStatus({argv + 2, argv + argc});
    }
    const Request request = parseCommandLine(argc, argv);
    if (request.help != Help::none) {
        std::cout << (request.help == Help::full ? helpText() : shortHelpText());
        return EXIT_SUCCESS;
    }
    return runInSandbox(request.scenario, request.ssh, request.command);
}

/// The same program is the board's first process, its SSH server and every peer. argv[0] selects the role.
int runAs(const std::string& name, int argc, char** argv) {
    if (const PeerEntry* peer = findPeer(name)) {
        return runPeerProcess(*peer);
    }
    if (name == "init" && argc > 2) {
        return runInit(argc, argv);
    }
    if (name == "ssh_server") {
        return runSshServer();
    }
    return runBoardsim(argc, argv);
}

/// Prints the message with the program's name before each line.
int fail(std::string_view message, int status) {
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = message.find('\n');
        std::cerr << "boardsim: " << message.substr(0, end) << '\n';
        message.remove_prefix(end == std::string_view::npos ? 0 : end + 1);
    }
    return status;
}

}  // namespace
}  // namespace Boardsim

int main(int argc, char** argv) {
    try {
        return Boardsim::runAs(std::filesystem::path(argv[0]).filename(), argc, argv);
    } catch (const Boardsim::UsageError& error) {
        return Boardsim::fail(error.what(), Boardsim::usageStatus);
    } catch (const std::exception& error) {
        return Boardsim::fail(error.what(), Boardsim::noBoardStatus);
    }
}
