#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "LiveTraffic.hpp"

namespace Boardsim {

/// The status in a peer's heartbeats. It is read from a file that people may change while the peer runs. If
/// the file contains 0, the traffic decides.
class HeartbeatStatus {
public:
    /// Writes 0 (healthy). Throws std::system_error.
    HeartbeatStatus(std::string_view peerName, std::shared_ptr<LiveTraffic> boardTraffic);

    /// The current value.
    std::uint32_t value() const;

private:
    std::uint32_t valueInFile() const;

    std::string peer;
    std::string path;
    std::shared_ptr<LiveTraffic> traffic;
};

}  // namespace Boardsim
