#include "StateTree.hpp"

#include <array>
#include <filesystem>
#include <string_view>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

constexpr std::array<std::string_view, 6> cpuCounters{
    "loops", "busy loops", "idle loops", "busy, per mille", "busy, per mille, highest", "late wake-ups",
};
constexpr std::array<std::string_view, 8> dmaCounters{
    "transfers started", "transfers completed", "transfers failed", "bytes moved",
    "channels",          "channels in use",     "queue full",       "time-outs",
};
constexpr std::array<std::string_view, 6> bridgeCounters{
    "frames in", "frames out", "frames flooded", "frames dropped", "addresses learnt", "addresses aged out",
};

}  // namespace

void writeStateTree(const std::string& instance, const std::string& root) {
    const std::string directory = root + "/" + instance + "/";
    std::filesystem::create_directories(directory);
    writeTextFile(directory + "tracing_on", "0\n");
    writeTextFile(directory + "dispatcherCpu", counterText(instance + ": CPU", cpuCounters));
    writeTextFile(directory + "dmaStats", counterText(instance + ": DMA service", dmaCounters));
    if (instance == "iwf") {
        writeTextFile(directory + "fpBridgeStats", counterText(instance + ": bridge", bridgeCounters));
    }
}

}  // namespace Boardsim
