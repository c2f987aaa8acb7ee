#include "QosStatistics.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

using State = DispatcherState;
using Row = Counter<State>;

constexpr std::array counters{
    Row{"class 0, frames", [](const State& s) { return s.qos[0].frames; }},
    Row{"class 0, dropped", [](const State& s) { return s.qos[0].dropped; }},
    Row{"class 1, frames", [](const State& s) { return s.qos[1].frames; }},
    Row{"class 1, dropped", [](const State& s) { return s.qos[1].dropped; }},
    Row{"class 2, frames", [](const State& s) { return s.qos[2].frames; }},
    Row{"class 2, dropped", [](const State& s) { return s.qos[2].dropped; }},
};

std::string titleOf(const std::string& instance) {
    return instance + ": QoS";
}

}  // namespace

QosStatistics::QosStatistics(const std::string& instanceName, std::shared_ptr<LiveTraffic> boardTraffic,
                             const std::string& root)
    : instance(instanceName),
      path(root + "/" + instanceName + "/qosStats"),
      traffic(std::move(boardTraffic)),
      atReset(counters.size()) {
    std::filesystem::create_directories(root + "/" + instanceName);
    writeTextFile(path, textSinceReset());
}

std::vector<std::string> QosStatistics::reset() {
    const std::vector<CounterValue> values = counted();
    std::ranges::transform(values, atReset.begin(), &CounterValue::value);
    writeTextFile(path, textSinceReset());
    return {instance + ": QoS statistics cleared"};
}

void QosStatistics::refresh() const {
    replaceTextFile(path, textSinceReset());
}

std::string QosStatistics::text(const std::string& instance, const DispatcherState* state) {
    return counterText(titleOf(instance), counterValues<State>(counters, state));
}

std::string QosStatistics::textSinceReset() const {
    std::vector<CounterValue> values = counted();
    for (std::size_t each = 0; each < values.size(); ++each) {
        values[each].value -= atReset[each];
    }
    return counterText(titleOf(instance), values);
}

/// Since the traffic began.
std::vector<CounterValue> QosStatistics::counted() const {
    return counterValues<State>(counters, traffic->dispatcher(instance));
}

}  // namespace Boardsim
