#include "PeerProcess.hpp"

#include <array>
#include <cstdlib>
#include <exception>
#include <iostream>

#include <fcntl.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "ChildProcess.hpp"
#include "PeerLoop.hpp"
#include "ScenarioFile.hpp"
#include "SystemCall.hpp"

namespace Boardsim {
namespace {

/// The peer's end of the readiness pipe.
constexpr int readinessNumber = 3;

void reportReady() {
    const Base::UniqueFd readiness(readinessNumber);
    Base::checked(::write(readiness.get(), "!", 1), "readiness");
}

/// Exits without cleanup, as in a crash, so that socket files stay behind.
void serveUntilDeath(const Peers& peers) {
    try {
        servePeers(peers, neverReadable);
    } catch (const PeerDeath&) {
        std::_Exit(EXIT_FAILURE);
    }
}

}  // namespace

PeerStart startPeerProcess(std::string_view name) {
    std::array<int, 2> ends{};
    Base::checked(::pipe2(ends.data(), O_CLOEXEC), "pipe");
    Base::UniqueFd readable(ends[0]);
    const Base::UniqueFd writable(ends[1]);
    ChildProcess child;
    child.openNull(STDIN_FILENO);
    child.openNull(STDOUT_FILENO);
    child.passDescriptor(writable.get(), readinessNumber);
    child.startProcessGroup();
    const pid_t pid = child.start(BoardPaths::peerProgram(name), {std::string(name)});
    return {std::string(name), pid, std::move(readable)};
}

void waitUntilReady(const PeerStart& start) {
    char byte = 0;
    if (Base::checked(Base::uninterrupted([&] { return ::read(start.readiness.get(), &byte, 1); }),
                      "readiness") == 0) {
        throw std::runtime_error(start.name + " did not start");
    }
}

int runPeerProcess(const PeerEntry& peer) {
    try {
        Scenario scenario;
        loadScenario(BoardPaths::scenario, scenario);
        const Peers peers = peer.build(scenario);
        reportReady();
        serveUntilDeath(peers);
    } catch (const std::exception& error) {
        std::cerr << peer.name << ": " << error.what() << '\n';
    }
    return EXIT_FAILURE;
}

}  // namespace Boardsim
