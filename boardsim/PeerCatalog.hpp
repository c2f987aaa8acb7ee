#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "Peer.hpp"
#include "Scenario.hpp"

/// One thing that processes do, and can do wrongly.
struct FaultTopic {
    std::string_view title;  ///< what the faults are faults of
    std::vector<FaultKind> (*kinds)();
};

/// The faults of one thing that a process does. A process that does two tells their faults apart by what
/// stands in front of the names.
struct FaultGroup {
    std::string_view prefix;
    const FaultTopic* topic;

    std::vector<FaultKind> kinds() const { return topic->kinds(); }
};

/// One process of the board.
struct PeerEntry {
    std::string_view name;  ///< of the process, bare
    std::string_view help;  ///< what it does
    bool (*runsOn)(Deployment deployment);
    std::span<const FaultGroup> faults;
    Peers (*build)(const Scenario& scenario);  ///< what the process serves; throws where it cannot be had
};

/// All processes of the board, in the order in which they start.
std::span<const PeerEntry> peerCatalog();

/// The process of exactly this name, or null.
const PeerEntry* findPeer(std::string_view name);
