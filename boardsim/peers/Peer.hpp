#pragma once

#include <exception>
#include <memory>
#include <vector>

namespace Boardsim {

/// One service of the simulated board: something to wait for, and what to do when it has come.
class Peer {
public:
    Peer() = default;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    Peer(Peer&&) = delete;
    Peer& operator=(Peer&&) = delete;
    virtual ~Peer() = default;

    /// The descriptor that is readable when there is something to serve. The peer owns it.
    virtual int descriptor() const = 0;

    /// Handles what has arrived; called when descriptor() is readable. Throws PeerDeath where the peer's
    /// fault is to die.
    virtual void serve() = 0;
};

using Peers = std::vector<std::unique_ptr<Peer>>;

/// Ends the process, or the thread, that serves the peer.
class PeerDeath : public std::exception {
public:
    const char* what() const noexcept override { return "the peer dies, as its fault says"; }
};

}  // namespace Boardsim
