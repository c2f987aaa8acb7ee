#pragma once

#include "Peer.hpp"

namespace Boardsim {

/// Stands for "never" as the descriptor that ends servePeers().
constexpr int neverReadable = -1;

/// Serves every peer whose descriptor is readable, until `stop` is. Lets a peer's PeerDeath pass.
void servePeers(const Peers& peers, int stop);

}  // namespace Boardsim
