#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// The status in a peer's heartbeats. It is read from a file that people may change while the peer runs.
class HeartbeatStatus {
public:
    /// Writes 0 (healthy). Throws std::system_error.
    explicit HeartbeatStatus(std::string_view peer);

    /// The current value; 0 if the file holds no number.
    std::uint32_t value() const;

private:
    std::string path;
};

}  // namespace Boardsim
