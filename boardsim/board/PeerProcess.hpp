#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

#include "PeerCatalog.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A peer's process that has been started and may not be ready yet.
struct PeerStart {
    std::string name;
    pid_t pid = 0;
    Base::UniqueFd readiness;  ///< gets one byte when it is ready, its end when it fails
};

/// Starts a peer as a process under its own bare name. It reads the scenario from its file. The caller
/// waits for the process. Throws std::system_error.
PeerStart startPeerProcess(std::string_view name);

/// Returns when the peer can be talked to. Throws std::runtime_error where it ended before.
void waitUntilReady(const PeerStart& start);

/// The life of such a process, in it; returns its exit status.
int runPeerProcess(const PeerEntry& peer);

}  // namespace Boardsim
