#include "NetlinkHelper.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <span>

#include "DatagramSocket.hpp"
#include "NetlinkSocket.hpp"

namespace Util {
namespace {

constexpr unsigned payloadLimit = 4096;  // bytes

}  // namespace

NetlinkHelper::NetlinkHelper(SmLog* client) : log(client) {
}

NetlinkHelper::~NetlinkHelper() {
    if (fd) {
        close();
    }
}

void NetlinkHelper::report(const char* format, ...) const {
    if (log == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    log->vwrite(0, "NetlinkHelper", format, arguments);
    va_end(arguments);
}

bool NetlinkHelper::open() {
    if (fd) {
        report("double initialization");
        return false;
    }
    fd = openNetlinkSocket();
    if (!fd) {
        report("Error while creating netlink socket: %s", std::strerror(errno));
        return false;
    }
    if (!bindNetlinkSocket(fd.get())) {
        report("Error while binding netlink socket: %s", std::strerror(errno));
        return false;
    }
    return true;
}

bool NetlinkHelper::send(const char* payload, unsigned length, unsigned destination, unsigned sequence) {
    if (length > payloadLimit) {
        report("Payload size too large: %u, max: %u", length, payloadLimit);
        return false;
    }
    const bool isValid = payload != nullptr || length == 0;
    if (!isValid) {
        errno = EFAULT;
    }
    if (!isValid ||
        !sendNetlinkMessage(fd.get(), std::as_bytes(std::span(payload, length)), destination, sequence)) {
        report("Error while sending netling message: %s", std::strerror(errno));
        return false;
    }
    return true;
}

int NetlinkHelper::receive(char* buffer, unsigned expected, std::chrono::milliseconds timeout,
                           unsigned& sequence) {
    if (expected > payloadLimit) {
        report("Expected packet size too large: %u, max: %u", expected, payloadLimit);
        return failed;
    }
    if (buffer == nullptr && expected > 0) {  // recv() checks only its own buffer
        report("recv() error: %s", std::strerror(EFAULT));
        return failed;
    }
    std::array<std::byte, netlinkHeaderSize + payloadLimit> datagram{};
    std::size_t length = 0;
    const auto room = std::span(datagram).first(netlinkHeaderSize + expected);
    switch (Korvel::receiveDatagram(fd.get(), room, Korvel::deadlineIn(timeout), length)) {
        case Korvel::Arrival::datagram:
            return unpack(room.first(length), buffer, sequence);
        case Korvel::Arrival::timedOut:
            report("Timed out while waiting for netlink msg");
            return timedOut;
        case Korvel::Arrival::waitFailed:
            report("poll() error: %s", std::strerror(errno));
            return failed;
        case Korvel::Arrival::receiveFailed:
            report("recv() error: %s", std::strerror(errno));
            return failed;
    }
    return failed;
}

int NetlinkHelper::unpack(std::span<const std::byte> datagram, char* buffer, unsigned& sequence) const {
    if (datagram.empty()) {
        report("Connection closed unexpectedly");
        return failed;
    }
    nlmsghdr header{};
    if (datagram.size() < sizeof header) {
        report("Packet received from netlink is too small");
        return failed;
    }
    std::memcpy(&header, datagram.data(), sizeof header);
    const auto payload = datagram.subspan(sizeof header);
    std::ranges::copy(payload, reinterpret_cast<std::byte*>(buffer));
    sequence = header.nlmsg_seq;
    return static_cast<int>(payload.size());
}

bool NetlinkHelper::close() {
    if (!fd) {
        errno = EBADF;
    }
    if (!fd || !fd.close()) {
        report("Error while closing netlink socket: %s", std::strerror(errno));
        return false;
    }
    return true;
}

}  // namespace Util
