#pragma once

#include <exception>
#include <memory>
#include <vector>

namespace Boardsim {

/// One service of the simulated board: a descriptor to wait for, and a function to call.
class Peer {
public:
    Peer() = default;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    Peer(Peer&&) = delete;
    Peer& operator=(Peer&&) = delete;
    virtual ~Peer() = default;

    /// Readable when there is something to serve. The peer owns it.
    virtual int descriptor() const = 0;

    /// Handles one request. Called when descriptor() is readable. Throws PeerDeath if the peer's fault makes
    /// it die.
    virtual void serve() = 0;
};

using Peers = std::vector<std::unique_ptr<Peer>>;

/// Ends the process or thread that serves the peer.
class PeerDeath : public std::exception {
public:
    const char* what() const noexcept override { return "the peer dies, as its fault says"; }
};

}  // namespace Boardsim
