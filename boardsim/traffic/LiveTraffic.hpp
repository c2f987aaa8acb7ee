#pragma once

#include <optional>
#include <string_view>

#include "Scenario.hpp"
#include "TrafficClock.hpp"
#include "TrafficSimulation.hpp"

namespace Boardsim {

/// The state of the board at the present moment. Without traffic, there is no state.
class LiveTraffic {
public:
    /// Reads the beginning of the traffic if there is any. Throws as TrafficClock.
    explicit LiveTraffic(const Scenario& scenario);

    /// The present state; null without traffic. Changes with later calls of any function.
    const BoardState* board();

    /// The part of one dispatcher ("iwf", "sfn"), and of the other processes; likewise.
    const DispatcherState* dispatcher(std::string_view instance);
    const SystemState* system();

    /// The time of the traffic; null without traffic.
    const TrafficClock* clock() const { return running ? &running->clock : nullptr; }

private:
    struct Running {
        TrafficClock clock;
        TrafficSimulation simulation;
    };
    std::optional<Running> running;
};

}  // namespace Boardsim
