#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Fault.hpp"

namespace Boardsim {

/// What kind of node a board is; it decides which dispatchers run.
enum class Deployment : std::uint8_t {
    iwf,         ///< the IWF dispatcher alone
    sfnMaster,   ///< both dispatchers
    sfnAntenna,  ///< the SFN dispatcher alone
};

/// A fault, and the peer that has it.
struct PeerFault {
    std::string peer;
    Fault fault;
};

/// Everything that can be said about a simulated board before it starts.
struct Scenario {
    Deployment deployment = Deployment::sfnMaster;
    bool secured = false;
    int secureError = 0;  ///< what the query for a secured board fails with; 0: it succeeds
    int cmaError = 0;     ///< what preparing for address translation fails with; 0: it succeeds
    std::string cmdline = "console=ttyS0,115200n8 root=/dev/ram0 rw mem=2G isolcpus=1,2,3";
    std::string config = {};  ///< path of the file to install as fpdispatcher.conf; empty: none
    std::uint64_t tmpSize = std::uint64_t{64} << 20;  ///< bytes
    std::uint64_t ffsSize = std::uint64_t{64} << 20;  ///< bytes
    std::set<std::string> without = {};               ///< peers that do not run
    std::vector<PeerFault> faults = {};               ///< of several for one thing the last one counts
    bool fullLogs = false;                            ///< both shared-memory logs filled to capacity
    bool bare = false;                                ///< no peers and no files of the board's own
};

}  // namespace Boardsim
