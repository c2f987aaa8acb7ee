#include "NetfpState.hpp"

#include <array>

#include "CounterText.hpp"

namespace Boardsim {
namespace {

using SystemRow = Counter<SystemState>;

constexpr std::array proxyCounters{
    SystemRow{"interfaces offered", [](const SystemState&) { return SystemState::interfaces; }},
    SystemRow{"interfaces added", [](const SystemState&) { return SystemState::interfaces; }},
    SystemRow{"routes learnt", [](const SystemState& s) { return s.routes; }},
    SystemRow{"neighbours learnt", [](const SystemState& s) { return s.neighbours; }},
    SystemRow{"heartbeats sent", [](const SystemState& s) { return s.heartbeats; }},
};
constexpr std::array serverCounters{
    SystemRow{"sessions", [](const SystemState& s) { return s.sessions; }},
    SystemRow{"fast-path channels", [](const SystemState& s) { return s.channels(); }},
    SystemRow{"security associations", [](const SystemState& s) { return s.securityAssociations(); }},
    SystemRow{"policies in", [](const SystemState& s) { return s.sessions; }},
    SystemRow{"policies out", [](const SystemState& s) { return s.sessions; }},
    SystemRow{"commands refused", [](const SystemState& s) { return s.refusedCommands; }},
};
constexpr std::array resourceCounters{
    SystemRow{"queues in use", [](const SystemState& s) { return s.queuesInUse; }},
    SystemRow{"queues free", [](const SystemState& s) { return SystemState::queues - s.queuesInUse; }},
    SystemRow{"memory regions", [](const SystemState& s) { return s.memoryRegions; }},
    SystemRow{"descriptors in use", [](const SystemState& s) { return s.descriptorsInUse; }},
    SystemRow{"clients", [](const SystemState& s) { return s.clients; }},
};

}  // namespace

std::string netfpProxyState(const SystemState* state) {
    return counterText("proxy:", counterValues<SystemState>(proxyCounters, state));
}

std::string netfpServerState(const SystemState* state) {
    return counterText("server:", counterValues<SystemState>(serverCounters, state));
}

std::string resourceManagerState(const SystemState* state) {
    return counterText("resources:", counterValues<SystemState>(resourceCounters, state));
}

}  // namespace Boardsim
