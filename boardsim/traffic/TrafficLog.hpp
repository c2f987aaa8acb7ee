#pragma once

#include <cstdint>
#include <string_view>

#include "LogLine.hpp"
#include "Scenario.hpp"
#include "TrafficSimulation.hpp"

namespace Boardsim {

struct LogWriter;

/// The log entries of one process: iwf_dispatcher, sfn_dispatcher or netfp_server.
class TrafficLog {
public:
    /// Only entries of these last seconds are returned. Among the older ones, those about single datagrams
    /// are left out, because newer ones would push them out of the log.
    static constexpr std::uint64_t longestPause = 120;
    static constexpr std::uint64_t longestPauseOfDatagrams = 3;

    TrafficLog(const Scenario& scenario, std::string_view process);

    /// The entries since the last call, up to this second. Those about single datagrams come last.
    LogLines linesUpTo(std::uint64_t second);

private:
    const LogWriter& writer;
    TrafficNoise noise;
    TrafficSimulation simulation;
};

}  // namespace Boardsim
