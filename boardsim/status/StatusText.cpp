#include "StatusText.hpp"

#include <iomanip>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "BoardPaths.hpp"
#include "BoardTraffic.hpp"
#include "FaultTopic.hpp"
#include "PeerCatalog.hpp"
#include "PrintableText.hpp"
#include "ScenarioFile.hpp"

namespace Boardsim {
namespace {

/// All faults of a peer, as in a scenario.
std::string faultsOf(const PeerEntry& peer, const Scenario& scenario) {
    std::string text;
    for (const FaultGroup& group : peer.faults) {
        const Fault fault = faultFor(scenario, peer.name, group);
        if (!fault.kind.empty()) {
            text += (text.empty() ? "" : ", ") + printable(fault.text);
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

struct Counts {
    std::string received = "?";  // if the log cannot be read
    std::string answered = "?";
};

Counts countsOf(const RunningBoard& board, const PeerEntry& peer) {
    try {
        const PeerLogContent log = readPeerLog(board, peer.name);
        return {std::to_string(log.received), std::to_string(log.answered)};
    } catch (const UnreadableFile&) {
        return {};
    }
}

void addPeer(std::ostream& out, const PeerEntry& peer, const RunningBoard& board, const Scenario& scenario) {
    const pid_t process = board.findProcess(std::string(peer.name));
    const Counts counts = countsOf(board, peer);
    addRow(out, peer.name, process == 0 ? "-" : std::to_string(process), process == 0 ? "dead" : "running",
           counts.received, counts.answered, faultsOf(peer, scenario));
}

void addPeers(std::ostream& out, const RunningBoard& board, const Scenario& scenario) {
    if (scenario.traffic.isOn()) {
        out << "  traffic " << scenario.traffic.text() << ", seed " << scenario.traffic.seed << '\n';
    }
    addRow(out, "PEER", "PID", "STATE", "RECEIVED", "ANSWERED", "FAULTS");
    for (const PeerEntry& peer : peerCatalog()) {
        if (peer.runsOn(scenario.deployment) && !scenario.without.contains(std::string(peer.name))) {
            addPeer(out, peer, board, scenario);
        }
    }
}

/// Throws std::runtime_error if the scenario is missing or invalid.
Scenario scenarioOf(const RunningBoard& board) {
    constexpr std::size_t limit = std::size_t{64} << 10;
    const std::optional<std::string> text = board.files().read(BoardPaths::scenario, limit);
    if (!text) {
        throw UnreadableFile(std::string(BoardPaths::scenario) + " is missing");
    }
    Scenario scenario;
    applyScenario(*text, BoardPaths::scenario, scenario);
    return scenario;
}

}  // namespace

std::string statusText(const RunningBoard& board) {
    std::ostringstream out;
    out << "Board " << board.pid() << " since " << board.startTime() << ": " << board.command() << '\n';
    try {
        const Scenario scenario = scenarioOf(board);
        if (scenario.bare) {
            out << "  bare, without peers\n";
        } else {
            addPeers(out, board, scenario);
        }
    } catch (const std::runtime_error& error) {
        const std::string message = error.what();  // valid names may follow on a second line
        out << "  peers unknown: " << printable(message.substr(0, message.find('\n'))) << '\n';
    }
    return out.str();
}

}  // namespace Boardsim
