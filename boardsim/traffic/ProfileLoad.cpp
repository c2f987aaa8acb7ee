#include "ProfileLoad.hpp"

#include <algorithm>
#include <array>

namespace Boardsim {
namespace {

ProfileLoad steadyLoad(std::uint64_t second) {
    return {.own = 420 + wave(second, 120) * 80 / 1000};
}

/// The two loads are so close to the capacity that the send queue fills and drains within seconds. Fragments
/// make a difference: two of them arrive as two datagrams, and leave as one.
ProfileLoad busyLoad(std::uint64_t second) {
    constexpr std::uint64_t period = 30;
    constexpr std::uint64_t filling = 18;
    return {.own = second % period < filling ? 1065U : 985U};
}

ProfileLoad leakLoad(std::uint64_t second) {
    return {.own = steadyLoad(second).own, .leaks = true};
}

ProfileLoad floodLoad(std::uint64_t second) {
    constexpr std::uint64_t calm = 5;  // before the first wave
    constexpr std::uint64_t period = 60;
    constexpr std::uint64_t flooded = 40;
    const bool flood = second >= calm && (second - calm) % period < flooded;
    return {.own = steadyLoad(second).own, .strangers = flood ? 6000U : 0U};
}

struct ProfileRow {
    TrafficProfile profile;
    ProfileLoad (*load)(std::uint64_t second);
};

constexpr std::array loads{
    ProfileRow{TrafficProfile::steady, steadyLoad},   ProfileRow{TrafficProfile::busy, busyLoad},
    ProfileRow{TrafficProfile::leak, leakLoad},       ProfileRow{TrafficProfile::flood, floodLoad},
    ProfileRow{TrafficProfile::flapping, steadyLoad},
};

}  // namespace

ProfileLoad loadOf(TrafficProfile profile, std::uint64_t second) {
    const auto* row = std::ranges::find(loads, profile, &ProfileRow::profile);
    return row == loads.end() ? ProfileLoad{} : row->load(second);
}

std::uint64_t wave(std::uint64_t second, std::uint64_t period) {
    const std::uint64_t place = second % period * 2;
    return (place < period ? place : 2 * period - place) * 1000 / period;
}

}  // namespace Boardsim
