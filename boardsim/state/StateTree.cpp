#include "StateTree.hpp"

#include <array>
#include <filesystem>
#include <span>
#include <string_view>
#include <utility>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

using State = DispatcherState;
using Row = Counter<State>;

constexpr std::array cpuCounters{
    Row{"loops", [](const State& s) { return s.cpu.loops; }},
    Row{"busy loops", [](const State& s) { return s.cpu.busyLoops; }},
    Row{"idle loops", [](const State& s) { return s.cpu.loops - s.cpu.busyLoops; }},
    Row{"busy, per mille", [](const State& s) { return s.cpu.busyPerMille; }},
    Row{"busy, per mille, highest", [](const State& s) { return s.cpu.highestBusyPerMille; }},
    Row{"late wake-ups", [](const State& s) { return s.cpu.lateWakeUps; }},
};
constexpr std::array dmaCounters{
    Row{"transfers started", [](const State& s) { return s.dma.started; }},
    Row{"transfers completed", [](const State& s) { return s.dma.completed(); }},
    Row{"transfers failed", [](const State& s) { return s.dma.failed; }},
    Row{"bytes moved", [](const State& s) { return s.dma.bytes; }},
    Row{"channels", [](const State&) { return DmaState::channels; }},
    Row{"channels in use", [](const State& s) { return s.dma.inFlight; }},
    Row{"queue full", [](const State& s) { return s.dma.queueFull; }},
    Row{"time-outs", [](const State& s) { return s.dma.timeOuts; }},
};
constexpr std::array bridgeCounters{
    Row{"frames in", [](const State& s) { return s.bridge.framesIn; }},
    Row{"frames out", [](const State& s) { return s.bridge.framesIn - s.bridge.dropped; }},
    Row{"frames flooded", [](const State& s) { return s.bridge.flooded; }},
    Row{"frames dropped", [](const State& s) { return s.bridge.dropped; }},
    Row{"addresses learnt", [](const State& s) { return s.bridge.learnt; }},
    Row{"addresses aged out", [](const State& s) { return s.bridge.agedOut; }},
};

struct StateFile {
    std::string_view name;
    std::string_view title;
    std::span<const Row> counters;
};

constexpr std::array stateFiles{
    StateFile{"dispatcherCpu", "CPU", cpuCounters},
    StateFile{"dmaStats", "DMA service", dmaCounters},
    StateFile{"fpBridgeStats", "bridge", bridgeCounters},
};

/// Only the IWF instance has the last one.
std::span<const StateFile> filesOf(std::string_view instance) {
    return std::span(stateFiles).first(stateFiles.size() - (instance == "iwf" ? 0 : 1));
}

}  // namespace

StateTree::StateTree(const std::string& instanceName, std::shared_ptr<LiveTraffic> boardTraffic,
                     const std::string& root)
    : instance(instanceName), directory(root + "/" + instanceName + "/"), traffic(std::move(boardTraffic)) {
    std::filesystem::create_directories(directory);
    writeTextFile(directory + "tracing_on", "0\n");
    write(writeTextFile);
}

void StateTree::refresh() const {
    write(replaceTextFile);
}

std::map<std::string, std::string> StateTree::texts(const std::string& instance,
                                                    const DispatcherState* state) {
    std::map<std::string, std::string> texts;
    for (const StateFile& file : filesOf(instance)) {
        texts[std::string(file.name)] =
            counterText(instance + ": " + std::string(file.title), counterValues(file.counters, state));
    }
    return texts;
}

void StateTree::write(void (*writeFile)(const std::string& path, std::string_view text)) const {
    for (const auto& [name, text] : texts(instance, traffic->dispatcher(instance))) {
        writeFile(directory + name, text);
    }
}

}  // namespace Boardsim
