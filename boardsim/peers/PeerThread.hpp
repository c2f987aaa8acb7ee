#pragma once

#include <memory>
#include <thread>

#include "Peer.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// Serves one peer on a thread of the calling process, from the constructor to the destructor. If the peer
/// dies, it is destroyed at once, so that its socket closes as with a process.
class PeerThread {
public:
    explicit PeerThread(std::unique_ptr<Peer> peer);
    PeerThread(const PeerThread&) = delete;
    PeerThread& operator=(const PeerThread&) = delete;
    PeerThread(PeerThread&&) = delete;
    PeerThread& operator=(PeerThread&&) = delete;
    ~PeerThread();

private:
    void serve();  ///< any exception but PeerDeath ends the process

    Peers peers;  // used only by the thread while it runs
    Base::UniqueFd stop;
    std::thread thread;
};

}  // namespace Boardsim
