#include "NetlinkHelper.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <span>

#include <sys/socket.h>

#include "NetlinkSocket.hpp"
#include "SystemCall.hpp"
#include "Wait.hpp"

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
    const bool isThere = payload != nullptr || length == 0;
    if (!isThere) {
        errno = EFAULT;
    }
    if (!isThere ||
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
    if (buffer == nullptr && expected > 0) {  // recv() would say so of its own buffer
        report("recv() error: %s", std::strerror(EFAULT));
        return failed;
    }
    switch (Korvel::waitReadable(fd.get(), Korvel::deadlineIn(timeout))) {
        case Korvel::Readiness::timedOut:
            report("Timed out while waiting for netlink msg");
            return timedOut;
        case Korvel::Readiness::failed:
            report("poll() error: %s", std::strerror(errno));
            return failed;
        case Korvel::Readiness::ready:
            return takeDatagram(buffer, expected, sequence);
    }
    return failed;
}

int NetlinkHelper::takeDatagram(char* buffer, unsigned expected, unsigned& sequence) {
    std::array<char, netlinkHeaderSize + payloadLimit> datagram{};
    const ssize_t length = Korvel::uninterrupted(
        [&] { return ::recv(fd.get(), datagram.data(), netlinkHeaderSize + expected, 0); });
    if (length == 0) {
        report("Connection closed unexpectedly");
        return failed;
    }
    if (length < 0) {
        report("recv() error: %s", std::strerror(errno));
        return failed;
    }
    nlmsghdr header{};
    if (static_cast<std::size_t>(length) < sizeof header) {
        report("Packet received from netlink is too small");
        return failed;
    }
    std::memcpy(&header, datagram.data(), sizeof header);
    const std::size_t payload = static_cast<std::size_t>(length) - sizeof header;
    std::copy_n(datagram.data() + sizeof header, payload, buffer);
    sequence = header.nlmsg_seq;
    return static_cast<int>(payload);
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
