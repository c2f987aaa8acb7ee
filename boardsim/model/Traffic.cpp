#include "Traffic.hpp"

#include <algorithm>
#include <array>

namespace Boardsim {
namespace {

constexpr std::array profiles{
    TrafficProfileName{"none", TrafficProfile::none,
                       "no traffic: the counters are invented, and never change"},
    TrafficProfileName{"steady", TrafficProfile::steady, "half of the capacity, without drops or errors"},
    TrafficProfileName{"busy", TrafficProfile::busy,
                       "at the limit of the capacity: queues fill and drain every 30 seconds"},
    TrafficProfileName{"leak", TrafficProfile::leak,
                       "heap and descriptors are never freed; after 65 to 75 seconds, allocations fail"},
    TrafficProfileName{
        "flood", TrafficProfile::flood,
        "from second 5 on, unknown hosts send datagrams for 40 seconds of every 60: drops, and "
        "log entries by the thousand"},
    TrafficProfileName{"flapping", TrafficProfile::flapping,
                       "every 30 seconds, one peer with heartbeats is unhealthy for 6 to 10 seconds"},
};

}  // namespace

std::span<const TrafficProfileName> trafficProfiles() {
    return profiles;
}

std::string Traffic::text() const {
    const auto* row = std::ranges::find(profiles, profile, &TrafficProfileName::profile);
    return std::string(row->name) + (headStart == 0 ? "" : ":" + std::to_string(headStart));
}

}  // namespace Boardsim
