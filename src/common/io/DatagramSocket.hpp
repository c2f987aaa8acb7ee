#pragma once

#include <cstddef>
#include <span>

#include <sys/socket.h>

#include "UniqueFd.hpp"
#include "Wait.hpp"

namespace Korvel {

/// Creates a datagram socket of the given address family; protocol 0 is the family's default. Sends time out
/// after one second, if the system supports that. On failure, the descriptor is empty and errno is set.
Base::UniqueFd openDatagramSocket(int family, int protocol = 0);

/// Sends one datagram to `address` of `length` bytes, on a socket of openDatagramSocket(). If the receiver's
/// queue is full, waits at most one second, regardless of signals, and fails with EAGAIN. Returns false, with
/// errno set, on failure.
[[nodiscard]] bool sendDatagram(int socket, std::span<const std::byte> datagram, const sockaddr* address,
                                socklen_t length);

/// The result of waiting for a datagram.
enum class Arrival { datagram, timedOut, waitFailed, receiveFailed };

/// Waits until the deadline for a datagram and receives it, cut to `buffer`. If poll() reports a datagram
/// that is not there, continues to wait. Sets `size` to the number of received bytes, only for
/// Arrival::datagram. Failures set errno.
[[nodiscard]] Arrival receiveDatagram(int socket, std::span<std::byte> buffer, const Deadline& deadline,
                                      std::size_t& size);

}  // namespace Korvel
