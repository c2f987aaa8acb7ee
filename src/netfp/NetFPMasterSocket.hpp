#pragma once

#include <string>

#include "NetfpMaster.hpp"

namespace Korvel {

// The exchange with the NetFP master on a descriptor that the caller owns. Failures are reported on standard
// error.

/// Returns a UNIX datagram socket bound to `path`, which replaces an existing file, or -1 on failure. The
/// caller closes it.
int connectAndBindToLinuxSocket(const std::string& path);

/// Sends the request unchanged, including its identifier, to the socket at `path`.
bool sendNetFPRequest(int fd, const std::string& path, NetfpMaster_Request* request);

/// Waits up to `retries` times 100 ms (0: without limit) for the response to request `id`, with any error
/// code, and writes it to `response`. Drops other datagrams. After a time-out, returns false without a
/// report.
bool receiveNetFpResponse(int fd, NetfpMaster_Response* response, unsigned id, int retries);

}  // namespace Korvel
