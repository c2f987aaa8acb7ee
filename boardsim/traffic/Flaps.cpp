#include "Flaps.hpp"

namespace Boardsim {
namespace {

constexpr std::uint64_t flapSource = 4;
constexpr std::uint64_t period = 30;  // seconds

std::vector<std::string_view> peersThatFlap(const Traffic& traffic, Deployment deployment) {
    if (traffic.profile != TrafficProfile::flapping) {
        return {};
    }
    std::vector<std::string_view> peers{Flaps::proxy};
    if (hasIwf(deployment)) {
        peers.push_back(Flaps::iwf);
    }
    if (hasSfn(deployment)) {
        peers.push_back(Flaps::sfn);
    }
    return peers;
}

}  // namespace

Flaps::Flaps(const Traffic& traffic, Deployment deployment)
    : noise(traffic.seed, flapSource), peers(peersThatFlap(traffic, deployment)) {
}

std::string_view Flaps::unhealthyPeer(std::uint64_t second) const {
    if (peers.empty()) {
        return "";
    }
    TrafficNoise::Draws draws = noise.in(second / period);
    const std::string_view peer = peers[static_cast<std::size_t>(draws.next(0, peers.size() - 1))];
    const std::uint64_t begin = draws.next(12, 18);
    const std::uint64_t end = begin + draws.next(6, 10);
    const std::uint64_t place = second % period;
    return begin <= place && place < end ? peer : "";
}

}  // namespace Boardsim
