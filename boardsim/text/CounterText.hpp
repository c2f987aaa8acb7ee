#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// One counter of a block of statistics: its name, and its value in the state of a process.
template <typename State>
struct Counter {
    std::string_view name;
    std::uint64_t (*value)(const State& state);
};

struct CounterValue {
    std::string_view name;
    std::uint64_t value;
};

/// A value for a counter that nothing counts: invented, but the same in every run.
constexpr std::uint64_t inventedValue(std::size_t place) {
    constexpr std::uint64_t step = 1009;
    return place * step;
}

/// The values in `state`. If it is null, the values are invented.
template <typename State>
std::vector<CounterValue> counterValues(std::span<const Counter<State>> counters, const State* state) {
    std::vector<CounterValue> values;
    for (const Counter<State>& each : counters) {
        values.push_back({each.name, state == nullptr ? inventedValue(values.size()) : each.value(*state)});
    }
    return values;
}

/// A block of statistics: the title, then one line with name and value per counter.
std::string counterText(std::string_view title, std::span<const CounterValue> values);

}  // namespace Boardsim
