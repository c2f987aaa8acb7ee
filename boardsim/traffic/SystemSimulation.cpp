#include "SystemSimulation.hpp"

#include <algorithm>

#include "ProfileLoad.hpp"
#include "Share.hpp"

namespace Boardsim {

SystemSimulation::SystemSimulation(const TrafficNoise& ownNoise, Dispatchers dispatchers) : noise(ownNoise) {
    describeResources(dispatchers);
}

void SystemSimulation::advance(std::uint64_t second, Dispatchers dispatchers, bool proxyStalled) {
    constexpr std::uint64_t sessionsOfWave = 16;
    constexpr std::uint64_t sessionsPeriod = 90;
    constexpr std::uint64_t routePeriod = 60;
    constexpr std::uint64_t neighbourPeriod = 20;
    TrafficNoise::Draws draws = noise.in(second);
    const bool lacksBuffers = std::ranges::any_of(
        dispatchers, [](const DispatcherState* each) { return each->lastSecond.noBuffer > 0; });
    now.routes += second % routePeriod == 0 ? 1 : 0;
    now.neighbours += second % neighbourPeriod == 0 ? 1 : 0;
    now.heartbeats += proxyStalled ? 0 : 1;
    now.sessions = sessionsOfWave + perMille(wave(second, sessionsPeriod), sessionsOfWave) + draws.next(0, 2);
    now.refusedCommands += lacksBuffers || proxyStalled ? draws.next(1, 3) : 0;
    now.proxyStalledFor = proxyStalled ? now.proxyStalledFor + 1 : 0;
    describeResources(dispatchers);
}

void SystemSimulation::describeResources(Dispatchers dispatchers) {
    constexpr std::uint64_t ownRegions = 4;
    constexpr std::uint64_t ownClients = 2;  // netfp_proxy and netfp_server
    constexpr std::uint64_t regionsPerDispatcher = 2;
    constexpr std::uint64_t queuesPerDispatcher = 8;
    constexpr std::uint64_t sessionsPerQueue = 4;
    const std::uint64_t count = dispatchers.size();
    now.queuesInUse = queuesPerDispatcher * count + now.sessions / sessionsPerQueue;
    now.memoryRegions = ownRegions + regionsPerDispatcher * count;
    now.clients = ownClients + count;
    now.descriptorsInUse = 0;
    for (const DispatcherState* each : dispatchers) {
        now.descriptorsInUse += each->pool.inUse;
    }
}

}  // namespace Boardsim
