#include "MessageText.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <iomanip>
#include <sstream>

#include "NetfpMaster.hpp"

namespace Boardsim {
namespace {

std::string portText(const NetfpMaster_Request& request) {
    return "port of " + fieldText(request.body.getSwitchPort.interfaceName);
}

std::string renameText(const NetfpMaster_Request& request) {
    const auto& [currentName, newName] = request.body.renameInterface;
    return "rename " + fieldText(currentName) + " to " + fieldText(newName);
}

std::string mirroringText(const NetfpMaster_Request& request) {
    const NetfpMaster_SetPortMirroring& mirroring = request.body.setPortMirroring;
    const std::string direction = mirroring.direction == Netfp_Direction_INBOUND    ? "inbound"
                                  : mirroring.direction == Netfp_Direction_OUTBOUND ? "outbound"
                                                                                    : "unknown";
    return std::string(mirroring.enable == 0 ? "no mirroring" : "mirroring") + " of port " +
           std::to_string(mirroring.fromPort) + " to port " + std::to_string(mirroring.toPort) + ", " +
           direction;
}

std::string multicastText(const NetfpMaster_Request& request) {
    const NetfpMaster_AddMulticastMac& multicast = request.body.addMulticastMac;
    return "multicast " + macText(multicast.mac) + " for " + fieldText(multicast.interfaceName) + ", VLAN " +
           (multicast.ignoreVlan != 0 ? "any" : std::to_string(multicast.vlanId));
}

struct RequestText {
    NetfpMaster_MessageType type;
    std::string (*text)(const NetfpMaster_Request& request);
};

constexpr std::array requestTexts{
    RequestText{NETFP_MASTER_GET_SWITCH_PORT, portText},
    RequestText{NETFP_MASTER_RENAME_INTERFACE, renameText},
    RequestText{NETFP_MASTER_SET_PORT_MIRRORING, mirroringText},
    RequestText{NETFP_MASTER_ADD_MULTICAST_MAC, multicastText},
};

}  // namespace

std::string macText(const std::uint8_t (&mac)[6]) {
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    const char* separator = "";
    for (const std::uint8_t byte : mac) {
        text << separator << std::setw(2) << +byte;
        separator = ":";
    }
    return text.str();
}

std::string masterRequestText(std::string_view datagram) {
    NetfpMaster_Request request{};
    if (datagram.size() != sizeof request) {
        return "no request";
    }
    std::memcpy(&request, datagram.data(), sizeof request);
    const auto* row = std::ranges::find(requestTexts, request.type, &RequestText::type);
    return "request " + std::to_string(request.requestId) + ": " +
           (row == requestTexts.end() ? "unknown type " + std::to_string(request.type) : row->text(request));
}

std::string masterResponseText(std::string_view datagram) {
    NetfpMaster_Response response{};
    if (datagram.size() < sizeof response) {
        return "the beginning of an answer";
    }
    std::memcpy(&response, datagram.data(), sizeof response);
    const std::string port =
        response.switchPort == 0 ? "" : "port " + std::to_string(response.switchPort) + ", ";
    return "request " + std::to_string(response.requestId) + ": " + port + "error " +
           std::to_string(response.errorCode);
}

}  // namespace Boardsim
