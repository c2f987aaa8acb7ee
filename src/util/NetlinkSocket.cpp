#include "NetlinkSocket.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

#include "DatagramSocket.hpp"

namespace Util {
namespace {

/// What a message is stands in its payload.
constexpr std::uint16_t everyMessageType = 1;

sockaddr_nl addressOf(unsigned portId) {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_pid = portId;
    return address;
}

const sockaddr* generic(const sockaddr_nl& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

unsigned ownPortId() {
    return static_cast<unsigned>(::getpid());
}

}  // namespace

Korvel::UniqueFd openNetlinkSocket() {
    return Korvel::openDatagramSocket(AF_NETLINK, NETLINK_USERSOCK);
}

bool bindNetlinkSocket(int socket) {
    const sockaddr_nl address = addressOf(ownPortId());
    return ::bind(socket, generic(address), sizeof address) == 0;
}

bool sendNetlinkMessage(int socket, std::span<const std::byte> payload, unsigned destination,
                        unsigned sequence) {
    if (payload.size() > maxNetlinkPayload || (payload.data() == nullptr && !payload.empty())) {
        errno = payload.size() > maxNetlinkPayload ? EMSGSIZE : EFAULT;
        return false;
    }
    const nlmsghdr header{.nlmsg_len = static_cast<std::uint32_t>(netlinkHeaderSize + payload.size()),
                          .nlmsg_type = everyMessageType,
                          .nlmsg_flags = 0,
                          .nlmsg_seq = sequence,
                          .nlmsg_pid = ownPortId()};
    std::array<std::byte, netlinkHeaderSize + maxNetlinkPayload> message{};
    std::memcpy(message.data(), &header, sizeof header);
    std::copy(payload.begin(), payload.end(), message.begin() + netlinkHeaderSize);
    const sockaddr_nl address = addressOf(destination);
    return Korvel::sendDatagram(socket, std::span(message).first(header.nlmsg_len), generic(address),
                                sizeof address);
}

}  // namespace Util
