#include "QosStatistics.hpp"

#include <array>
#include <filesystem>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

constexpr std::array<std::string_view, 6> counters{
    "class 0, frames",  "class 0, dropped", "class 1, frames",
    "class 1, dropped", "class 2, frames",  "class 2, dropped",
};

}  // namespace

QosStatistics::QosStatistics(const std::string& instanceName, const std::string& root)
    : instance(instanceName), path(root + "/" + instanceName + "/qosStats") {
    std::filesystem::create_directories(root + "/" + instanceName);
    writeTextFile(path, counterText(instance + ": QoS", counters));
}

std::vector<std::string> QosStatistics::reset() const {
    writeTextFile(path, counterText(instance + ": QoS", counters, 0));
    return {instance + ": QoS statistics cleared"};
}

}  // namespace Boardsim
