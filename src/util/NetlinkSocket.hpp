#pragma once

#include <cstddef>
#include <span>

#include <linux/netlink.h>

#include "UniqueFd.hpp"

namespace Util {

// Netlink sockets between programs, of the user-socket protocol. Failures leave errno set and are reported
// by the callers, each in its own words.

/// The header in front of every payload, as the kernel's headers have it.
constexpr std::size_t netlinkHeaderSize = sizeof(nlmsghdr);
static_assert(netlinkHeaderSize == 16);

/// An unbound socket, whose sends end after a second. Empty where it cannot be had.
Base::UniqueFd openNetlinkSocket();

/// Binds to this process's id as the port id.
[[nodiscard]] bool bindNetlinkSocket(int socket);

/// Sends the payload behind its header to the port id `destination`.
[[nodiscard]] bool sendNetlinkMessage(int socket, std::span<const std::byte> payload, unsigned destination,
                                      unsigned sequence);

}  // namespace Util
