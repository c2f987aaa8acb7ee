#pragma once

#include <span>
#include <string_view>

#include "FaultTopic.hpp"
#include "Peer.hpp"
#include "Scenario.hpp"

namespace Boardsim {

struct PeerEntry {
    std::string_view name;  ///< name of the process
    std::string_view help;  ///< what it does
    bool (*runsOn)(Deployment deployment);
    std::span<const FaultGroup> faults;
    Peers (*build)(const Scenario& scenario);  ///< what the process serves; throws on failure
};

/// All processes of the board, in the order of their start.
std::span<const PeerEntry> peerCatalog();

/// The process with this name, or null.
const PeerEntry* findPeer(std::string_view name);

}  // namespace Boardsim
