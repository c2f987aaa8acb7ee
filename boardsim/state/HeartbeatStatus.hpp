#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Boardsim {

/// The status that a peer's heartbeats carry: a number in a file that people may change while the peer runs.
class HeartbeatStatus {
public:
    /// Starts with 0, healthy. Throws std::system_error.
    explicit HeartbeatStatus(std::string_view peer);

    /// As the file says at this moment; 0 where it holds no number.
    std::uint32_t value() const;

private:
    std::string path;
};

}  // namespace Boardsim
