#pragma once

#include <cstdint>

#include "DispatcherState.hpp"
#include "ProfileLoad.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// The way of datagrams through a dispatcher: received, reassembled, queued by class, sent.
class PacketFlow {
public:
    /// `datagramsPerSecond` is what the dispatcher can send.
    explicit PacketFlow(std::uint64_t datagramsPerSecond) : capacity(datagramsPerSecond) {}

    /// Adds a second to the counters of sockets, reassembly and classes. Expects an empty `lastSecond`, and
    /// describes the second there. A stalled dispatcher sends nearly nothing.
    void advance(DispatcherState& state, const ProfileLoad& load, bool stalled, TrafficNoise::Draws& noise);

private:
    void reassemble(DispatcherState& state, bool lacksDescriptors, TrafficNoise::Draws& noise);

    std::uint64_t capacity;
    std::uint64_t openOfKnown = 0;      // contexts that will be completed
    std::uint64_t openOfStrangers = 0;  // contexts that will time out
};

}  // namespace Boardsim
