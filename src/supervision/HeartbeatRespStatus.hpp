#pragma once

#include <cstdint>
#include <string>

namespace Korvel {

/// What each peer answered to the heartbeat of one cycle.
struct HeartbeatRespStatus {
    enum Status : std::uint32_t { NOT_RECEIVED = 0, OK = 1, ERROR = 2 };

    /// The value's name; empty for any other value.
    static std::string toString(Status status);

    Status netfpProxy = NOT_RECEIVED;
    Status iwf = NOT_RECEIVED;
    Status sfn = NOT_RECEIVED;
};

}  // namespace Korvel
