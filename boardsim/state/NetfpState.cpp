#include "NetfpState.hpp"

#include <array>

#include "CounterText.hpp"

namespace Boardsim {

std::string netfpProxyState() {
    constexpr std::array<std::string_view, 5> counters{
        "interfaces offered", "interfaces added", "routes learnt", "neighbours learnt", "heartbeats sent",
    };
    return counterText("proxy:", counters);
}

std::string netfpServerState() {
    constexpr std::array<std::string_view, 6> counters{
        "sessions",    "fast-path channels", "security associations",
        "policies in", "policies out",       "commands refused",
    };
    return counterText("server:", counters);
}

std::string resourceManagerState() {
    constexpr std::array<std::string_view, 5> counters{
        "queues in use", "queues free", "memory regions", "descriptors in use", "clients",
    };
    return counterText("resources:", counters);
}

}  // namespace Boardsim
