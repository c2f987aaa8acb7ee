#include "Board.hpp"

#include <csignal>
#include <filesystem>

#include <sys/wait.h>

#include "BoardFiles.hpp"
#include "BoardPaths.hpp"
#include "PeerCatalog.hpp"
#include "PeerProcess.hpp"
#include "PhysicalMemory.hpp"
#include "SmLogPeer.hpp"
#include "SystemCall.hpp"
#include "TextFile.hpp"

namespace Boardsim {

Board::Board(const Scenario& scenario) {
    writeBoardFiles(scenario);
    PhysicalMemory::fill();
    if (scenario.fullLogs) {
        fillSmLog(SmLogPeer::dispatcher);
        fillSmLog(SmLogPeer::systemLibrary);
    }
    try {
        std::vector<PeerStart> starts;
        for (const PeerEntry& peer : peerCatalog()) {
            if (peer.runsOn(scenario.deployment) && !scenario.without.contains(std::string(peer.name))) {
                starts.push_back(startPeerProcess(peer.name));
                processes.emplace(peer.name, starts.back().pid);
            }
        }
        for (const PeerStart& start : starts) {
            waitUntilReady(start);
        }
    } catch (...) {
        stop();
        throw;
    }
}

Board::~Board() {
    stop();
}

void Board::stop() noexcept {
    for (const auto& [name, process] : processes) {
        ::kill(process, SIGKILL);
        Base::uninterrupted([id = process] { return ::waitpid(id, nullptr, 0); });
    }
}

pid_t Board::pid(std::string_view peer) const {
    const auto row = processes.find(peer);
    if (row == processes.end()) {
        throw std::out_of_range("not started: " + std::string(peer));
    }
    return row->second;
}

std::vector<std::string> Board::received(std::string_view peer) {
    const std::string file = BoardPaths::receivedFile(peer);
    return std::filesystem::exists(file) ? linesOf(readTextFile(file)) : std::vector<std::string>{};
}

}  // namespace Boardsim
