#pragma once

#include <cstdint>
#include <span>

#include "DispatcherState.hpp"
#include "SystemState.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// The processes beside the dispatchers at work, second by second.
class SystemSimulation {
public:
    using Dispatchers = std::span<const DispatcherState* const>;

    /// `dispatchers` are those that run on the board, before the first second.
    SystemSimulation(const TrafficNoise& ownNoise, Dispatchers dispatchers);

    const SystemState& state() const { return now; }

    /// Adds one second, after the dispatchers. The caller counts the seconds from 1.
    void advance(std::uint64_t second, Dispatchers dispatchers, bool proxyStalled);

private:
    void describeResources(Dispatchers dispatchers);

    TrafficNoise noise;
    SystemState now;
};

}  // namespace Boardsim
