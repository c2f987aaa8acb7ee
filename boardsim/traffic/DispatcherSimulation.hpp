#pragma once

#include <cstdint>

#include "DispatcherState.hpp"
#include "MemoryUse.hpp"
#include "PacketFlow.hpp"
#include "ProfileLoad.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// A dispatcher at work, second by second. Computes with whole numbers only, so that the results are the same
/// on every processor.
class DispatcherSimulation {
public:
    /// `datagramsPerSecond` is what the dispatcher can send.
    DispatcherSimulation(const TrafficNoise& ownNoise, std::uint64_t datagramsPerSecond);

    const DispatcherState& state() const { return now; }

    /// Adds one second. The caller counts the seconds from 1. A stalled dispatcher sends nearly nothing.
    void advance(std::uint64_t second, const ProfileLoad& load, bool stalled);

private:
    TrafficNoise noise;
    std::uint64_t capacity;
    PacketFlow flow;
    MemoryUse memory;
    DispatcherState now;
};

}  // namespace Boardsim
