#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// The QoS statistics of a dispatcher instance, in its tree of state files.
class QosStatistics {
public:
    /// The MMI command that resets the statistics.
    static constexpr const char* resetRequest = "resetqosstats";

    /// Writes the file qosStats of the instance ("iwf", "sfn"). Throws std::system_error.
    explicit QosStatistics(const std::string& instanceName, const std::string& root = "/tmp/fuse");

    /// Sets all counters to zero. Returns the datagrams of the answer.
    std::vector<std::string> reset() const;

private:
    std::string instance;
    std::string path;
};

}  // namespace Boardsim
