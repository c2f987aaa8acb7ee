#pragma once

#include <cstdint>

namespace Boardsim {

/// What netfp_proxy, netfp_server and resmgr_server report.
struct SystemState {
    static constexpr std::uint64_t interfaces = 4;
    static constexpr std::uint64_t queues = 64;

    // netfp_proxy
    std::uint64_t routes = 12;
    std::uint64_t neighbours = 20;
    std::uint64_t heartbeats = 0;
    // netfp_server
    std::uint64_t sessions = 16;
    std::uint64_t refusedCommands = 0;
    // resmgr_server
    std::uint64_t queuesInUse = 0;
    std::uint64_t memoryRegions = 0;
    std::uint64_t descriptorsInUse = 0;  ///< of all dispatchers
    std::uint64_t clients = 0;

    std::uint64_t proxyStalledFor = 0;  ///< seconds since netfp_proxy became unhealthy; 0: healthy

    std::uint64_t channels() const { return 2 * sessions; }
    std::uint64_t securityAssociations() const { return 2 * channels(); }
};

}  // namespace Boardsim
