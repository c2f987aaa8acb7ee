#pragma once

#include <cstddef>
#include <span>

#include <linux/netlink.h>

#include "UniqueFd.hpp"

namespace Util {

// Netlink sockets between programs, of the protocol NETLINK_USERSOCK. Failures set errno; callers report
// them.

/// The header before every payload, as defined by the kernel.
constexpr std::size_t netlinkHeaderSize = sizeof(nlmsghdr);
static_assert(netlinkHeaderSize == 16);

/// Returns an unbound socket whose sends time out after one second, or an empty descriptor.
Base::UniqueFd openNetlinkSocket();

/// Binds the socket to this process's id as its port id.
[[nodiscard]] bool bindNetlinkSocket(int socket);

/// Sends a header and the payload to the port id `destination`.
[[nodiscard]] bool sendNetlinkMessage(int socket, std::span<const std::byte> payload, unsigned destination,
                                      unsigned sequence);

}  // namespace Util
