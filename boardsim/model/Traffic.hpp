#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Boardsim {

/// How the counters of a board grow with time.
enum class TrafficProfile : std::uint8_t { none, steady, busy, leak, flood, flapping };

struct TrafficProfileName {
    std::string_view name;
    TrafficProfile profile;
    std::string_view help;  ///< what happens on the board
};

/// All profiles, in the order of the help text.
std::span<const TrafficProfileName> trafficProfiles();

/// The traffic of a board. Two boards with equal settings have equal counters at equal times.
struct Traffic {
    /// As if the traffic had begun a day before the board.
    static constexpr int longestHeadStart = 86'400;

    TrafficProfile profile = TrafficProfile::none;
    int headStart = 0;  ///< seconds of traffic before the board starts
    std::uint64_t seed = 1;

    bool isOn() const { return profile != TrafficProfile::none; }

    /// As on the command line: "leak", or "leak:60" with a head start.
    std::string text() const;
};

}  // namespace Boardsim
