#pragma once

#include <string>

#include "NetfpMaster.hpp"

namespace Korvel {

// The exchange with the NetFP master on a descriptor of the caller's. Failures are reported on standard
// error.

/// A UNIX datagram socket bound to `path`, in place of whatever file is there; -1 where that fails. The
/// caller closes it.
int connectAndBindToLinuxSocket(const std::string& path);

/// Sends the request as it is, its identifier included, to the socket at `path`.
bool sendNetFPRequest(int fd, const std::string& path, NetfpMaster_Request* request);

/// Waits `retries` times 100 ms (0: without limit) for the response to request `id`, whatever its error
/// code, and writes it to `response`. Other datagrams are dropped. A wait that ends without one is false
/// without a message.
bool receiveNetFpResponse(int fd, NetfpMaster_Response* response, unsigned id, int retries);

}  // namespace Korvel
