#include "LiveTraffic.hpp"

namespace Boardsim {

LiveTraffic::LiveTraffic(const Scenario& scenario) {
    if (scenario.traffic.isOn()) {
        running = Running{TrafficClock(), TrafficSimulation(scenario.traffic, scenario.deployment)};
    }
}

const BoardState* LiveTraffic::board() {
    if (!running) {
        return nullptr;
    }
    running->simulation.advanceTo(running->clock.second());
    return &running->simulation.state();
}

const DispatcherState* LiveTraffic::dispatcher(std::string_view instance) {
    const BoardState* state = board();
    return state == nullptr ? nullptr : &state->dispatcher(instance);
}

const SystemState* LiveTraffic::system() {
    const BoardState* state = board();
    return state == nullptr ? nullptr : &state->system;
}

}  // namespace Boardsim
