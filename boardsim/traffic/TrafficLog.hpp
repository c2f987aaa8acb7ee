#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "LogLine.hpp"
#include "Scenario.hpp"
#include "TrafficSimulation.hpp"

namespace Boardsim {

struct LogWriter;

/// The log entries of one process: iwf_dispatcher, sfn_dispatcher or netfp_server.
class TrafficLog {
public:
    /// Only entries of these last seconds are passed. Among the older ones, those about single datagrams are
    /// left out, because newer ones would push them out of the log.
    static constexpr std::uint64_t longestPause = 120;
    static constexpr std::uint64_t longestPauseOfDatagrams = 10;

    TrafficLog(const Scenario& scenario, std::string_view process);

    /// Passes the entries since the last call to `write`, up to this second.
    void upTo(std::uint64_t second, const std::function<void(const LogLine& line)>& write);

private:
    LogLines linesOfNextSecond(std::uint64_t lastSecond);

    const LogWriter& writer;
    TrafficNoise noise;
    TrafficSimulation simulation;
};

}  // namespace Boardsim
