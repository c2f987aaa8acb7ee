#include "DispatcherEvents.hpp"

#include <array>

#include "LogEvent.hpp"

namespace Boardsim {
namespace {

using State = DispatcherState;
using std::to_string;

constexpr std::uint64_t queueWarning = SocketState::queueLimit * 8 / 10;

std::uint64_t heapPercent(const State& state) {
    return state.heap.inUse() * 100 / HeapState::bytes;
}

std::uint64_t freePercent(const State& state) {
    return state.pool.free() * 100 / PoolState::descriptors;
}

template <std::uint64_t threshold>
bool heapReaches(const State& before, const State& after) {
    return heapPercent(before) < threshold && heapPercent(after) >= threshold;
}

template <std::uint64_t threshold>
bool freeDescriptorsFallBelow(const State& before, const State& after) {
    return freePercent(before) >= threshold && freePercent(after) < threshold;
}

/// True in the first second in which the number is not 0.
template <auto number>
bool begins(const State& before, const State& after) {
    return before.lastSecond.*number == 0 && after.lastSecond.*number > 0;
}

template <auto number>
bool ends(const State& before, const State& after) {
    return before.lastSecond.*number > 0 && after.lastSecond.*number == 0;
}

template <auto number>
bool goesOn(const State& /*before*/, const State& after) {
    return after.lastSecond.*number > 0;
}

std::string heapText(const State& /*before*/, const State& after) {
    return "heap " + to_string(heapPercent(after)) + " % in use: " + to_string(after.heap.inUse()) + " of " +
           to_string(HeapState::bytes) + " bytes";
}

std::string poolText(const State& /*before*/, const State& after) {
    return "descriptor pool low: " + to_string(after.pool.free()) + " of " +
           to_string(PoolState::descriptors) + " free";
}

std::uint64_t qosDropped(const State& state) {
    std::uint64_t dropped = 0;
    for (const QosClassState& each : state.qos) {
        dropped += each.dropped;
    }
    return dropped;
}

constexpr std::array dispatcherRows{
    LogEvent<State>{
        LogLevel::warning,
        [](const State& before, const State& after) {
            return before.stalledFor == 0 && after.stalledFor > 0;
        },
        [](const State&, const State&) { return std::string("unhealthy: the event loop has stalled"); }},
    LogEvent<State>{LogLevel::warning, heapReaches<75>, heapText},
    LogEvent<State>{LogLevel::warning, heapReaches<90>, heapText},
    LogEvent<State>{LogLevel::warning, freeDescriptorsFallBelow<25>, poolText},
    LogEvent<State>{LogLevel::warning, freeDescriptorsFallBelow<10>, poolText},
    LogEvent<State>{LogLevel::error, goesOn<&LastSecond::failedAllocations>,
                    [](const State&, const State& after) {
                        return "out of memory: " + to_string(after.lastSecond.failedAllocations) +
                               " allocations failed, " + to_string(after.heap.free()) + " bytes free";
                    }},
    LogEvent<State>{LogLevel::error, goesOn<&LastSecond::noBuffer>,
                    [](const State&, const State& after) {
                        return "no descriptor: " + to_string(after.lastSecond.noBuffer) +
                               " datagrams dropped";
                    }},
    LogEvent<State>{LogLevel::warning,
                    [](const State& before, const State& after) {
                        return before.sockets.queued < queueWarning && after.sockets.queued >= queueWarning;
                    },
                    [](const State&, const State& after) {
                        return "send queue filling: " + to_string(after.sockets.queued) + " of " +
                               to_string(SocketState::queueLimit);
                    }},
    LogEvent<State>{
        LogLevel::warning, begins<&LastSecond::qosDropped>,
        [](const State&, const State&) { return std::string("send queue full: frames are dropped"); }},
    LogEvent<State>{LogLevel::information, ends<&LastSecond::qosDropped>,
                    [](const State&, const State& after) {
                        return "send queue no longer full: " + to_string(qosDropped(after)) +
                               " frames dropped since the start";
                    }},
    LogEvent<State>{LogLevel::warning, begins<&LastSecond::strangers>,
                    [](const State&, const State& after) {
                        return "flood: " + to_string(after.lastSecond.strangers) +
                               " datagrams from unknown peers in a second";
                    }},
    LogEvent<State>{LogLevel::information, ends<&LastSecond::strangers>,
                    [](const State&, const State& after) {
                        return "flood over: " + to_string(after.sockets.unknownPeer) +
                               " datagrams from unknown peers dropped since the start";
                    }},
    LogEvent<State>{LogLevel::information,
                    [](const State& before, const State& after) {
                        return before.stalledFor > 0 && after.stalledFor == 0;
                    },
                    [](const State& before, const State&) {
                        return "healthy again after " + to_string(before.stalledFor) + " s";
                    }},
    LogEvent<State>{LogLevel::error, goesOn<&LastSecond::dmaTimeOuts>,
                    [](const State&, const State& after) {
                        return "DMA: " + to_string(after.lastSecond.dmaTimeOuts) + " transfers timed out";
                    }},
};

}  // namespace

LogLines dispatcherEvents(const DispatcherState& before, const DispatcherState& after, std::uint64_t second) {
    LogLines lines{{LogLevel::debug, to_string(after.lastSecond.arrived) + " datagrams in, " +
                                         to_string(after.lastSecond.sent) + " out, " +
                                         to_string(after.sockets.queued) + " queued"}};
    if (isTimeToSumUp(second)) {
        lines.push_back({LogLevel::information, "heap " + to_string(heapPercent(after)) + " % in use, " +
                                                    to_string(after.pool.free()) + " descriptors free"});
    }
    addEvents<State>(lines, dispatcherRows, before, after);
    return lines;
}

std::string strangerAtSocket(const std::string& address, const std::string& number) {
    return "dropped a datagram from unknown peer " + address + ":2152: no session with tunnel endpoint " +
           number;
}

}  // namespace Boardsim
