#pragma once

#include <string>

namespace Korvel {

// UNIX datagram sockets by path. Addresses go to the kernel at their full size. A path of 108 bytes or more
// does not fit one: ENAMETOOLONG.

/// False with errno set.
[[nodiscard]] bool bindToPath(int socket, const std::string& path);

/// Sends the `size` bytes at `data` as one datagram to the socket bound to `path`. False with errno set.
[[nodiscard]] bool sendToPath(int socket, const std::string& path, const void* data, std::size_t size);

}  // namespace Korvel
