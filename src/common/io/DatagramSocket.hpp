#pragma once

#include <cstddef>
#include <span>

#include <sys/socket.h>

#include "UniqueFd.hpp"
#include "Wait.hpp"

namespace Korvel {

/// A datagram socket of the given address family; protocol 0 is the family's usual one. Its sends end after a
/// second, where the system sets such a limit. Empty with errno set where it cannot be had.
Base::UniqueFd openDatagramSocket(int family, int protocol = 0);

/// Sends one datagram to `address` of `length` bytes, on a socket of openDatagramSocket(). Waits at most one
/// second for room at the other end, whatever signals arrive; the reason is then EAGAIN. False with errno
/// set.
[[nodiscard]] bool sendDatagram(int socket, std::span<const std::byte> datagram, const sockaddr* address,
                                socklen_t length);

/// How the wait for a datagram ended.
enum class Arrival { datagram, timedOut, waitFailed, receiveFailed };

/// Waits until a datagram is there, or the deadline, and receives it, cut to `buffer`. The wait goes on where
/// what was announced is not there. `size` is how many bytes were received; it is only written with a
/// datagram. The failures leave errno set.
[[nodiscard]] Arrival receiveDatagram(int socket, std::span<std::byte> buffer, const Deadline& deadline,
                                      std::size_t& size);

}  // namespace Korvel
