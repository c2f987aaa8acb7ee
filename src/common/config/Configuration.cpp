#include "Configuration.hpp"

#include <array>

namespace Korvel::Configuration {
namespace {

const std::string loopbackAddress = "127.0.0.1";
const std::string mmiEndOfMessage = "<MMI_END_OF_MSG>";
constexpr std::uint32_t mmiDatagramSize = 513;

std::array<Config, 2> conf{{
    {7778, 7777, loopbackAddress, mmiDatagramSize, mmiEndOfMessage},
    {8778, 8777, loopbackAddress, mmiDatagramSize, mmiEndOfMessage},
}};

std::set<DispatcherInstance> dispInstance;
bool collectLogsOnExit = false;

}  // namespace

void setDispatcherInstance(DispatcherInstance instance) {
    dispInstance.insert(instance);
}

std::string dispInstanceToString(DispatcherInstance instance) {
    switch (instance) {
        case IWF:
            return "iwf";
        case SFN:
            return "sfn";
    }
    return "unknown";
}

unsigned getInstanceCount() {
    return static_cast<unsigned>(dispInstance.size());
}

std::set<DispatcherInstance>::const_iterator getInstanceBegin() {
    return dispInstance.begin();
}

std::set<DispatcherInstance>::const_iterator getInstanceEnd() {
    return dispInstance.end();
}

Config& getConfig(DispatcherInstance instance) {
    return conf[instance];
}

void setCollectLogsOnExit() {
    collectLogsOnExit = true;
}

bool getCollectLogsOnExit() {
    return collectLogsOnExit;
}

}  // namespace Korvel::Configuration
