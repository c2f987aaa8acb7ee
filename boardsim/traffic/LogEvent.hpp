#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "LogLine.hpp"
#include "TrafficNoise.hpp"

namespace Boardsim {

/// An entry that a process writes if its state changes in a certain way within a second.
template <typename State>
struct LogEvent {
    LogLevel level;
    bool (*happens)(const State& before, const State& after);
    std::string (*text)(const State& before, const State& after);
};

template <typename State>
void addEvents(LogLines& lines, std::span<const LogEvent<State>> events, const State& before,
               const State& after) {
    for (const LogEvent<State>& event : events) {
        if (event.happens(before, after)) {
            lines.push_back({event.level, event.text(before, after)});
        }
    }
}

/// Adds a warning for each of these datagrams, up to a limit. `text` describes a datagram from the host
/// `address` with a 32-bit `number`.
void addStrangers(LogLines& lines, std::uint64_t datagrams, TrafficNoise::Draws noise,
                  std::string (*text)(const std::string& address, const std::string& number));

/// Passes true in every tenth second, for entries that sum up.
constexpr bool isTimeToSumUp(std::uint64_t second) {
    constexpr std::uint64_t period = 10;
    return second % period == 0;
}

}  // namespace Boardsim
