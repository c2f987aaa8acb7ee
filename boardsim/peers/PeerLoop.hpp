#pragma once

#include "Peer.hpp"

namespace Boardsim {

/// A `stop` for servePeers() that never ends it.
constexpr int neverReadable = -1;

/// Serves every peer whose descriptor is readable, until `stop` is readable. Does not catch PeerDeath.
void servePeers(const Peers& peers, int stop);

}  // namespace Boardsim
