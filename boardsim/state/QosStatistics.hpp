#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "CounterText.hpp"
#include "LiveTraffic.hpp"

namespace Boardsim {

/// The QoS statistics of a dispatcher instance, in its tree of state files.
class QosStatistics {
public:
    /// The MMI command that resets the statistics.
    static constexpr const char* resetRequest = "resetqosstats";

    /// The content of the file since the traffic began. Without a state, the numbers are invented.
    static std::string text(const std::string& instance, const DispatcherState* state);

    /// Writes the file qosStats of the instance ("iwf", "sfn"). Without traffic, the numbers are invented.
    /// Throws std::system_error.
    QosStatistics(const std::string& instanceName, std::shared_ptr<LiveTraffic> boardTraffic,
                  const std::string& root = "/tmp/fuse");

    /// Sets all counters to zero. Returns the datagrams of the answer.
    std::vector<std::string> reset();

    /// Replaces the file with the present numbers. Throws std::system_error, and then leaves the file as it
    /// was.
    void refresh() const;

private:
    std::string textSinceReset() const;
    std::vector<CounterValue> counted() const;

    std::string instance;
    std::string path;
    std::shared_ptr<LiveTraffic> traffic;
    std::vector<std::uint64_t> atReset;  // the values at the last reset
};

}  // namespace Boardsim
