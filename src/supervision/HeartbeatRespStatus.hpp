#pragma once

#include <cstdint>
#include <string>

namespace Korvel {

/// Each peer's response to the heartbeat of one cycle.
struct HeartbeatRespStatus {
    enum Status : std::uint32_t { NOT_RECEIVED = 0, OK = 1, ERROR = 2 };

    /// Returns the name of a value, or an empty string for any other value.
    static std::string toString(Status status);

    Status netfpProxy = NOT_RECEIVED;
    Status iwf = NOT_RECEIVED;
    Status sfn = NOT_RECEIVED;
};

}  // namespace Korvel
