#pragma once

#include "NetfpMaster.hpp"
#include "Wait.hpp"

namespace Korvel {

/// Bytes that a response needs to tell which request it answers, and how that went.
constexpr std::size_t responseHeaderSize = offsetof(NetfpMaster_Response, switchPort);

/// Bytes that a response with a switch port needs.
constexpr std::size_t switchPortResponseSize = offsetof(NetfpMaster_Response, rest);

/// The deadline of a time-out given in units of 100 ms; 0 means none.
Deadline deadlineInX100(unsigned timeout);

enum class Received { response, nothing, failure };

/// Takes the next datagram of at least `minimumSize` bytes from `socket`; shorter ones are dropped and do
/// not prolong the wait. Writes `response` only when there is one, with zeros for bytes that were not sent.
/// A failure is reported on standard error; running into the deadline is not.
Received receiveResponse(int socket, const Deadline& deadline, std::size_t minimumSize,
                         NetfpMaster_Response& response);

}  // namespace Korvel
