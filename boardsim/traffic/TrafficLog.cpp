#include "TrafficLog.hpp"

#include <algorithm>
#include <array>
#include <iterator>

#include "DispatcherEvents.hpp"
#include "LogEvent.hpp"
#include "SystemEvents.hpp"

namespace Boardsim {
namespace {

LogLines iwfEvents(const BoardState& before, const BoardState& after) {
    return dispatcherEvents(before.iwf, after.iwf, after.second);
}

LogLines sfnEvents(const BoardState& before, const BoardState& after) {
    return dispatcherEvents(before.sfn, after.sfn, after.second);
}

std::uint64_t iwfStrangers(const BoardState& state) {
    return state.iwf.lastSecond.strangers;
}

std::uint64_t sfnStrangers(const BoardState& state) {
    return state.sfn.lastSecond.strangers;
}

}  // namespace

struct LogWriter {
    std::string_view process;
    std::uint64_t noiseSource;
    LogLines (*events)(const BoardState& before, const BoardState& after);
    std::uint64_t (*strangers)(const BoardState& state);  // datagrams that the process drops
    std::string (*strangerText)(const std::string& address, const std::string& number);
};

namespace {

constexpr std::array writers{
    LogWriter{"iwf_dispatcher", 16, iwfEvents, iwfStrangers, strangerAtSocket},
    LogWriter{"sfn_dispatcher", 17, sfnEvents, sfnStrangers, strangerAtSocket},
    LogWriter{"netfp_server", 18, systemEvents, iwfStrangers, strangerInTunnel},
};

const LogWriter& findWriter(std::string_view process) {
    return *std::ranges::find(writers, process, &LogWriter::process);
}

}  // namespace

TrafficLog::TrafficLog(const Scenario& scenario, std::string_view process)
    : writer(findWriter(process)),
      noise(scenario.traffic.seed, writer.noiseSource),
      simulation(scenario.traffic, scenario.deployment) {
}

LogLines TrafficLog::linesUpTo(std::uint64_t second) {
    LogLines lines;
    LogLines datagrams;
    simulation.advanceTo(std::max(second, longestPause) - longestPause);
    while (simulation.state().second < second) {
        const BoardState before = simulation.state();
        simulation.advanceTo(before.second + 1);
        const BoardState& after = simulation.state();
        std::ranges::move(writer.events(before, after), std::back_inserter(lines));
        if (after.second + longestPauseOfDatagrams > second) {
            addStrangers(datagrams, writer.strangers(after), noise.in(after.second), writer.strangerText);
        }
    }
    std::ranges::move(datagrams, std::back_inserter(lines));
    return lines;
}

}  // namespace Boardsim
