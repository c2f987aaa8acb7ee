#pragma once

#include <span>
#include <string_view>

#include "FaultTopic.hpp"
#include "Peer.hpp"
#include "Scenario.hpp"

namespace Boardsim {

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

}  // namespace Boardsim
