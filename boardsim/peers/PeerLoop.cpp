#include "PeerLoop.hpp"

#include <poll.h>

#include "SystemCall.hpp"

namespace Boardsim {

void servePeers(const Peers& peers, int stop) {
    std::vector<pollfd> waits{{.fd = stop, .events = POLLIN, .revents = 0}};
    for (const auto& peer : peers) {
        waits.push_back({.fd = peer->descriptor(), .events = POLLIN, .revents = 0});
    }
    while (waits.front().revents == 0) {
        Base::checked(Base::uninterrupted([&] { return ::poll(waits.data(), waits.size(), -1); }), "poll");
        for (std::size_t i = 0; i < peers.size(); ++i) {
            if (waits[i + 1].revents != 0) {
                peers[i]->serve();
            }
        }
    }
}

}  // namespace Boardsim
