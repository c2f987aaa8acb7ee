#include "SystemEvents.hpp"

#include <array>

#include "LogEvent.hpp"

namespace Boardsim {
namespace {

using std::to_string;

/// Both dispatchers meet the same strangers, even if only one of them runs.
std::uint64_t strangersOf(const BoardState& state) {
    return state.iwf.lastSecond.strangers;
}

bool proxyIsUnhealthy(const BoardState& state) {
    return state.system.proxyStalledFor > 0;
}

constexpr std::array systemRows{
    LogEvent<BoardState>{
        LogLevel::warning,
        [](const BoardState& before, const BoardState& after) {
            return !proxyIsUnhealthy(before) && proxyIsUnhealthy(after);
        },
        [](const BoardState&, const BoardState&) { return std::string("netfp_proxy is unhealthy"); }},
    LogEvent<BoardState>{LogLevel::error,
                         [](const BoardState& before, const BoardState& after) {
                             return after.system.refusedCommands > before.system.refusedCommands;
                         },
                         [](const BoardState& before, const BoardState& after) {
                             return "commands refused: " +
                                    to_string(after.system.refusedCommands - before.system.refusedCommands) +
                                    (proxyIsUnhealthy(after) ? ", no answer from netfp_proxy"
                                                             : ", no descriptor free");
                         }},
    LogEvent<BoardState>{LogLevel::information,
                         [](const BoardState& before, const BoardState& after) {
                             return proxyIsUnhealthy(before) && !proxyIsUnhealthy(after);
                         },
                         [](const BoardState& before, const BoardState&) {
                             return "netfp_proxy is healthy again after " +
                                    to_string(before.system.proxyStalledFor) + " s";
                         }},
    LogEvent<BoardState>{LogLevel::warning,
                         [](const BoardState& before, const BoardState& after) {
                             return strangersOf(before) == 0 && strangersOf(after) > 0;
                         },
                         [](const BoardState&, const BoardState&) {
                             return std::string("flood: packets without security association");
                         }},
    LogEvent<BoardState>{LogLevel::information,
                         [](const BoardState& before, const BoardState& after) {
                             return strangersOf(before) > 0 && strangersOf(after) == 0;
                         },
                         [](const BoardState&, const BoardState&) { return std::string("flood over"); }},
};

}  // namespace

LogLines systemEvents(const BoardState& before, const BoardState& after) {
    LogLines lines{{LogLevel::debug, to_string(after.system.sessions) + " sessions, " +
                                         to_string(after.system.channels()) + " fast-path channels"}};
    if (isTimeToSumUp(after.second)) {
        lines.push_back({LogLevel::information, to_string(after.system.routes) + " routes, " +
                                                    to_string(after.system.neighbours) + " neighbours"});
    }
    addEvents<BoardState>(lines, systemRows, before, after);
    return lines;
}

std::string strangerInTunnel(const std::string& address, const std::string& number) {
    return "no security association for SPI " + number + " from " + address + ", packet dropped by policy in";
}

}  // namespace Boardsim
