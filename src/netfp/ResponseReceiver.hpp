#pragma once

#include <cstddef>
#include <functional>

#include "NetfpMaster.hpp"
#include "Wait.hpp"

namespace Korvel {

/// Returns the deadline for a time-out in units of 100 ms; 0 means none.
Deadline deadlineInX100(unsigned timeout);

enum class ResponseResult { received, timedOut, failed };

/// Returns true if a datagram is the expected response. Bytes after the first `size` are zero.
using ResponseTest = std::function<bool(const NetfpMaster_Response& datagram, std::size_t size)>;

/// Receives datagrams from `socket` until `accepts` returns true or until the deadline. Writes `response`
/// only for Received::response. Reports a failure on standard error, but not a time-out.
ResponseResult receiveResponse(int socket, const Deadline& deadline, const ResponseTest& accepts,
                               NetfpMaster_Response& response);

}  // namespace Korvel
