#pragma once

#include <cstdint>

#include "Traffic.hpp"

namespace Boardsim {

/// What a profile demands of a dispatcher in one second.
struct ProfileLoad {
    std::uint64_t own = 0;        ///< datagrams of known hosts, per mille of the dispatcher's capacity
    std::uint64_t strangers = 0;  ///< datagrams of unknown hosts, per mille of the dispatcher's capacity
    bool leaks = false;           ///< memory is not released
};

ProfileLoad loadOf(TrafficProfile profile, std::uint64_t second);

/// Rises from 0 to 1000 and falls to 0 again in each period.
std::uint64_t wave(std::uint64_t second, std::uint64_t period);

}  // namespace Boardsim
