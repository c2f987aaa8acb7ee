#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Scenario.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// The times at which a peer is unhealthy under the profile "flapping": one peer in each half minute.
class Flaps {
public:
    /// The peers with heartbeats.
    static constexpr std::string_view proxy = "netfp_proxy";
    static constexpr std::string_view iwf = "iwf_dispatcher";
    static constexpr std::string_view sfn = "sfn_dispatcher";

    Flaps(const Traffic& traffic, Deployment deployment);

    /// The peer that is unhealthy in this second; empty if there is none.
    std::string_view unhealthyPeer(std::uint64_t second) const;

private:
    TrafficNoise noise;
    std::vector<std::string_view> peers;  // those that can be unhealthy; none under other profiles
};

}  // namespace Boardsim
