#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Fault.hpp"
#include "Traffic.hpp"

namespace Boardsim {

/// The kind of node. It decides which dispatchers run.
enum class Deployment : std::uint8_t {
    iwf,         ///< only the IWF dispatcher
    sfnMaster,   ///< both dispatchers
    sfnAntenna,  ///< only the SFN dispatcher
};

constexpr bool hasIwf(Deployment deployment) {
    return deployment != Deployment::sfnAntenna;
}
constexpr bool hasSfn(Deployment deployment) {
    return deployment != Deployment::iwf;
}

struct PeerFault {
    std::string peer;
    Fault fault;
};

/// The settings of a simulated board.
struct Scenario {
    Deployment deployment = Deployment::sfnMaster;
    bool secured = false;
    int secureError = 0;  ///< error of the query for a secured board; 0: it succeeds
    int cmaError = 0;     ///< error of the preparation for address translation; 0: it succeeds
    std::string cmdline = "console=ttyS0,115200n8 root=/dev/ram0 rw mem=2G isolcpus=1,2,3";
    std::string config = {};                          ///< file to install as fpdispatcher.conf; empty: none
    std::uint64_t tmpSize = std::uint64_t{64} << 20;  ///< bytes
    std::uint64_t ffsSize = std::uint64_t{64} << 20;  ///< bytes
    std::set<std::string> without = {};               ///< peers that are not started
    std::vector<PeerFault> faults = {};               ///< of several in one group, the last one counts
    Traffic traffic = {};                             ///< what the counters and logs show
    bool fullLogs = false;                            ///< both shared-memory logs start full
    bool bare = false;                                ///< only the sandbox: no peers and no board files
};

}  // namespace Boardsim
