#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

#include "PeerCatalog.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A peer process that has been started, but may not be ready.
struct PeerStart {
    std::string name;
    pid_t pid = 0;
    Base::UniqueFd readiness;  ///< receives one byte when the peer is ready, end of file if it fails
};

/// Starts a peer process, which reads the scenario from its file. The caller waits for the process. Throws
/// std::system_error.
PeerStart startPeerProcess(std::string_view name);

/// Waits until the peer is ready. Throws std::runtime_error if it exits first.
void waitUntilReady(const PeerStart& start);

/// The main function of a peer process. Returns its exit status.
int runPeerProcess(const PeerEntry& peer);

}  // namespace Boardsim
