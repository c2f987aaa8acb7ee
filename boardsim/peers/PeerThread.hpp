#pragma once

#include <memory>
#include <thread>

#include "Peer.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// Serves one peer on a thread of the calling process, from the constructor to the destructor.
/// A peer that dies is destroyed there and then, so that its socket is gone as with a process.
class PeerThread {
public:
    explicit PeerThread(std::unique_ptr<Peer> peer);
    PeerThread(const PeerThread&) = delete;
    PeerThread& operator=(const PeerThread&) = delete;
    PeerThread(PeerThread&&) = delete;
    PeerThread& operator=(PeerThread&&) = delete;
    ~PeerThread();

private:
    void serve();  ///< whatever is thrown there, but for a peer's death, ends the process

    Peers peers;  // the thread's alone while it runs
    Base::UniqueFd stop;
    std::thread thread;
};

}  // namespace Boardsim
