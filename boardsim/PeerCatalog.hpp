#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "Peer.hpp"
#include "Scenario.hpp"

/// The faults of one thing that a process does. A process that does two tells their faults apart by what
/// stands in front of the names.
struct FaultGroup {
    std::string_view prefix;
    std::vector<FaultKind> (*kinds)();
};

/// One process of the board.
struct PeerEntry {
    std::string_view name;  ///< of the process, bare
    bool (*runsOn)(Deployment deployment);
    std::span<const FaultGroup> faults;
    Peers (*build)(const Scenario& scenario);  ///< what the process serves; throws where it cannot be had
};

/// All processes of the board, in the order in which they start.
std::span<const PeerEntry> peerCatalog();

/// The process of exactly this name, or null.
const PeerEntry* findPeer(std::string_view name);
