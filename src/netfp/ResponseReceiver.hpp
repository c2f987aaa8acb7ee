#pragma once

#include <cstddef>
#include <functional>

#include "NetfpMaster.hpp"
#include "Wait.hpp"

namespace Korvel {

/// The deadline of a time-out given in units of 100 ms; 0 means none.
Deadline deadlineInX100(unsigned timeout);

enum class Received { response, nothing, failure };

/// Whether a datagram is the response that the caller waits for. Bytes behind the first `size` are zero.
using ResponseTest = std::function<bool(const NetfpMaster_Response& datagram, std::size_t size)>;

/// Takes datagrams from `socket` until `accepts` takes one; the others do not prolong the wait. Writes
/// `response` only when there is one. A failure is reported on standard error; running into the deadline is
/// not.
Received receiveResponse(int socket, const Deadline& deadline, const ResponseTest& accepts,
                         NetfpMaster_Response& response);

}  // namespace Korvel
