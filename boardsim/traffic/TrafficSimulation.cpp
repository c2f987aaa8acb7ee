#include "TrafficSimulation.hpp"

namespace Boardsim {
namespace {

constexpr std::uint64_t iwfCapacity = 3000;  // datagrams per second
constexpr std::uint64_t sfnCapacity = 2400;

/// The sources of noise. Flaps have one, too.
enum Source : std::uint8_t { iwfSource = 1, sfnSource, systemSource };

}  // namespace

std::uint32_t BoardState::heartbeatOf(std::string_view peer) const {
    constexpr std::uint32_t unhealthy = 2;
    const bool stalled = (peer == Flaps::iwf && iwf.stalledFor > 0) ||
                         (peer == Flaps::sfn && sfn.stalledFor > 0) ||
                         (peer == Flaps::proxy && system.proxyStalledFor > 0);
    return stalled ? unhealthy : 0;
}

TrafficSimulation::TrafficSimulation(const Traffic& settings, Deployment kindOfBoard)
    : profile(settings.profile),
      deployment(kindOfBoard),
      flaps(settings, kindOfBoard),
      iwf({settings.seed, iwfSource}, iwfCapacity),
      sfn({settings.seed, sfnSource}, sfnCapacity),
      system({settings.seed, systemSource}, running()),
      now{.iwf = iwf.state(), .sfn = sfn.state(), .system = system.state()} {
}

void TrafficSimulation::advanceTo(std::uint64_t second) {
    while (now.second < second) {
        advance();
    }
}

void TrafficSimulation::advance() {
    const std::uint64_t second = now.second + 1;
    const ProfileLoad load = loadOf(profile, second);
    const std::string_view unhealthy = flaps.unhealthyPeer(second);
    iwf.advance(second, load, unhealthy == Flaps::iwf);
    sfn.advance(second, load, unhealthy == Flaps::sfn);
    system.advance(second, running(), unhealthy == Flaps::proxy);
    now = {.second = second, .iwf = iwf.state(), .sfn = sfn.state(), .system = system.state()};
}

std::vector<const DispatcherState*> TrafficSimulation::running() const {
    std::vector<const DispatcherState*> dispatchers;
    if (hasIwf(deployment)) {
        dispatchers.push_back(&iwf.state());
    }
    if (hasSfn(deployment)) {
        dispatchers.push_back(&sfn.state());
    }
    return dispatchers;
}

}  // namespace Boardsim
