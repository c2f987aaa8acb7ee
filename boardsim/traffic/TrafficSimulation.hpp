#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "DispatcherSimulation.hpp"
#include "Flaps.hpp"
#include "Scenario.hpp"
#include "SystemSimulation.hpp"

namespace Boardsim {

/// Everything that the peers of a board report at one moment.
struct BoardState {
    std::uint64_t second = 0;  ///< since the traffic began
    DispatcherState iwf;
    DispatcherState sfn;
    SystemState system;

    /// The dispatcher `instance` ("iwf", "sfn").
    const DispatcherState& dispatcher(std::string_view instance) const {
        return instance == "iwf" ? iwf : sfn;
    }

    /// The status in the heartbeats of the process `peer`; 0 means healthy.
    std::uint32_t heartbeatOf(std::string_view peer) const;
};

/// The traffic of a whole board. The state depends only on the traffic's settings, the deployment and the
/// second. So all processes of a board compute the same state, without exchanging messages.
class TrafficSimulation {
public:
    TrafficSimulation(const Traffic& settings, Deployment kindOfBoard);

    const BoardState& state() const { return now; }

    /// Advances to `second`. Does nothing if that second has passed.
    void advanceTo(std::uint64_t second);

private:
    void advance();
    std::vector<const DispatcherState*> running() const;

    TrafficProfile profile;
    Deployment deployment;
    Flaps flaps;
    DispatcherSimulation iwf;
    DispatcherSimulation sfn;
    SystemSimulation system;
    BoardState now;
};

}  // namespace Boardsim
