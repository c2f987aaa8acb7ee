#include "NetlinkWire.hpp"

#include <sys/socket.h>

#include "WireNumber.hpp"

std::string netlinkMessage(std::uint32_t sequence, std::uint32_t portId, std::string_view payload) {
    constexpr std::string_view typeAndFlags("\1\0\0\0", 4);
    std::string bytes = littleEndian(static_cast<std::uint32_t>(netlinkPayloadOffset + payload.size()));
    bytes += typeAndFlags;
    bytes += littleEndian(sequence) + littleEndian(portId);
    return bytes.append(payload);
}

std::string statusPayload(std::uint32_t messageType, std::uint32_t status) {
    return littleEndian(messageType) + littleEndian(status);
}

sockaddr_nl netlinkAddress(std::uint32_t portId) {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_pid = portId;
    return address;
}
