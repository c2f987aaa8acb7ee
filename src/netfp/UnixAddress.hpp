#pragma once

#include <string>

namespace Korvel {

// UNIX datagram sockets by path. Addresses are passed to the kernel at full size. Paths of 108 or more bytes
// fail with ENAMETOOLONG.

/// Returns false, with errno set, on failure.
[[nodiscard]] bool bindToPath(int socket, const std::string& path);

/// Sends the `size` bytes at `data` as one datagram to the socket bound to `path`. Returns false, with errno
/// set, on failure.
[[nodiscard]] bool sendToPath(int socket, const std::string& path, const void* data, std::size_t size);

}  // namespace Korvel
