#include "StatusText.hpp"

#include <iomanip>
#include <sstream>

#include "BoardPaths.hpp"
#include "BoardTraffic.hpp"
#include "PeerCatalog.hpp"
#include "PeerFaults.hpp"
#include "ScenarioFile.hpp"

namespace {

/// Every fault that a peer has, as a scenario says it.
std::string faultsOf(const PeerEntry& peer, const Scenario& scenario) {
    std::string text;
    for (const FaultGroup& group : peer.faults) {
        const Fault fault = faultFor(scenario, peer.name, group);
        if (!fault.kind.empty()) {
            text += (text.empty() ? "" : ", ") + fault.said;
        }
    }
    return text.empty() ? "-" : text;
}

void addRow(std::ostream& out, std::string_view name, std::string_view process, std::string_view state,
            std::string_view received, std::string_view answered, std::string_view faults) {
    out << "  " << std::left << std::setw(16) << name << std::right << std::setw(7) << process << "  "
        << std::left << std::setw(7) << state << std::right << std::setw(10) << received << std::setw(10)
        << answered << "  " << faults << '\n';
}

void addPeer(std::ostream& out, const PeerEntry& peer, const RunningBoard& board, const Scenario& scenario) {
    const pid_t process = board.findProcess(std::string(peer.name));
    const PeerLogContent log = readPeerLog(board, peer.name);
    addRow(out, peer.name, process == 0 ? "-" : std::to_string(process), process == 0 ? "dead" : "running",
           std::to_string(log.received), std::to_string(log.answered), faultsOf(peer, scenario));
}

}  // namespace

std::string statusText(const RunningBoard& board) {
    Scenario scenario;
    loadScenario(board.pathTo(BoardPaths::scenario), scenario);
    std::ostringstream out;
    out << "Board " << board.pid() << " since " << board.startTime() << ": " << board.command() << '\n';
    if (scenario.bare) {
        out << "  bare, without peers\n";
        return out.str();
    }
    addRow(out, "PEER", "PID", "STATE", "RECEIVED", "ANSWERED", "FAULTS");
    for (const PeerEntry& peer : peerCatalog()) {
        if (peer.runsOn(scenario.deployment) && !scenario.without.contains(std::string(peer.name))) {
            addPeer(out, peer, board, scenario);
        }
    }
    return out.str();
}
