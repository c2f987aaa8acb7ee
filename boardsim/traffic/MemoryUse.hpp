#pragma once

#include <cstdint>

#include "DispatcherState.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// What a dispatcher allocates: blocks of its heap, and packet descriptors of its pool.
class MemoryUse {
public:
    /// Adds a second to the counters of heap and pool, after the other counters. If the dispatcher leaks,
    /// some of its memory is never released.
    void advance(DispatcherState& state, bool leaks, TrafficNoise::Draws& noise);

private:
    void allocate(DispatcherState& state, bool leaks, TrafficNoise::Draws& noise);
    void takeDescriptors(DispatcherState& state, bool leaks, TrafficNoise::Draws& noise);

    std::uint64_t leakedBlocks = 0;
    std::uint64_t leakedDescriptors = 0;
};

}  // namespace Boardsim
