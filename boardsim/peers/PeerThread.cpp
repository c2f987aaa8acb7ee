#include "PeerThread.hpp"

#include <sys/eventfd.h>

#include "PeerLoop.hpp"
#include "SystemCall.hpp"

namespace Boardsim {

PeerThread::PeerThread(std::unique_ptr<Peer> peer)
    : stop(Base::checked(::eventfd(0, EFD_CLOEXEC), "eventfd")) {
    peers.push_back(std::move(peer));
    thread = std::thread([this] { serve(); });
}

PeerThread::~PeerThread() {
    ::eventfd_write(stop.get(), 1);
    thread.join();
}

void PeerThread::serve() {
    try {
        servePeers(peers, stop.get());
    } catch (const PeerDeath&) {
        peers.clear();
    }
}

}  // namespace Boardsim
