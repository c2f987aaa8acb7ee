#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// A dispatcher instance's QoS statistics, which show in its state tree.
class QosStatistics {
public:
    /// What asks for a reset at the MMI service.
    static constexpr const char* resetRequest = "resetqosstats";

    /// Writes them to the file qosStats of the instance ("iwf", "sfn"). Throws std::system_error.
    explicit QosStatistics(const std::string& instanceName, const std::string& root = "/tmp/fuse");

    /// Sets them all to zero. The texts of the answer, a datagram each.
    std::vector<std::string> reset() const;

private:
    std::string instance;
    std::string path;
};

}  // namespace Boardsim
