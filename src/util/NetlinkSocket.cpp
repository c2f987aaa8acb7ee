#include "NetlinkSocket.hpp"

#include <cstdint>
#include <cstring>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include "DatagramSocket.hpp"
#include "SocketAddress.hpp"

namespace Util {
namespace {

/// The message type is the first word of the payload.
constexpr std::uint16_t netlinkMessageType = 1;

sockaddr_nl addressOf(unsigned portId) {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_pid = portId;
    return address;
}

unsigned ownPortId() {
    return static_cast<unsigned>(::getpid());
}

}  // namespace

Base::UniqueFd openNetlinkSocket() {
    return Korvel::openDatagramSocket(AF_NETLINK, NETLINK_USERSOCK);
}

bool bindNetlinkSocket(int socket) {
    const sockaddr_nl address = addressOf(ownPortId());
    return ::bind(socket, Base::genericAddress(address), sizeof address) == 0;
}

bool sendNetlinkMessage(int socket, std::span<const std::byte> payload, unsigned destination,
                        unsigned sequence) {
    const nlmsghdr header{.nlmsg_len = static_cast<std::uint32_t>(netlinkHeaderSize + payload.size()),
                          .nlmsg_type = netlinkMessageType,
                          .nlmsg_flags = 0,
                          .nlmsg_seq = sequence,
                          .nlmsg_pid = ownPortId()};
    std::vector<std::byte> message(sizeof header);
    std::memcpy(message.data(), &header, sizeof header);
    message.insert(message.end(), payload.begin(), payload.end());
    const sockaddr_nl address = addressOf(destination);
    return Korvel::sendDatagram(socket, message, Base::genericAddress(address), sizeof address);
}

}  // namespace Util
