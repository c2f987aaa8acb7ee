#include "DatagramSocket.hpp"

#include <chrono>

#include <sys/time.h>

#include "Console.hpp"
#include "SystemCall.hpp"

namespace Korvel {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr std::chrono::seconds sendTimeout{1};

/// Ignores failures: without the option, sends work but may block longer.
void setSendTimeout(int socket, microseconds limit) {
    constexpr auto microsecondsPerSecond = microseconds::period::den;
    timeval time{};
    time.tv_sec = static_cast<decltype(time.tv_sec)>(limit.count() / microsecondsPerSecond);
    time.tv_usec = static_cast<decltype(time.tv_usec)>(limit.count() % microsecondsPerSecond);
    ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof time);
}

}  // namespace

Base::UniqueFd openDatagramSocket(int family, int protocol) {
    Base::UniqueFd socket(::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, protocol));
    if (socket) {
        setSendTimeout(socket.get(), sendTimeout);
    }
    return socket;
}

bool sendDatagram(int socket, std::span<const std::byte> datagram, const sockaddr* address,
                  socklen_t length) {
    flushStandardOutput();
    const auto deadline = steady_clock::now() + sendTimeout;
    bool shortened = false;
    ssize_t sent = ::sendto(socket, datagram.data(), datagram.size(), 0, address, length);
    while (sent < 0 && errno == EINTR) {
        const auto left = std::chrono::ceil<microseconds>(deadline - steady_clock::now());
        if (left <= microseconds::zero()) {
            errno = EAGAIN;
            break;
        }
        setSendTimeout(socket, left);
        shortened = true;
        sent = ::sendto(socket, datagram.data(), datagram.size(), 0, address, length);
    }
    if (shortened) {
        const int reason = errno;
        setSendTimeout(socket, sendTimeout);
        errno = reason;
    }
    return sent == static_cast<ssize_t>(datagram.size());
}

Arrival receiveDatagram(int socket, std::span<std::byte> buffer, const Deadline& deadline,
                        std::size_t& size) {
    do {
        switch (waitReadable(socket, deadline)) {
            case Readiness::timedOut:
                return Arrival::timedOut;
            case Readiness::failed:
                return Arrival::waitFailed;
            case Readiness::ready:
                break;
        }
        const ssize_t received =
            Base::uninterrupted([&] { return ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT); });
        if (received >= 0) {
            size = static_cast<std::size_t>(received);
            return Arrival::datagram;
        }
        if (errno != EAGAIN) {
            return Arrival::receiveFailed;
        }
    } while (!hasPassed(deadline));
    return Arrival::timedOut;
}

}  // namespace Korvel
