#include "InterfaceTable.hpp"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "MessageText.hpp"

namespace Boardsim {

std::optional<std::int32_t> InterfaceTable::portOf(std::string_view interface) const {
    const auto row = ports.find(interface);
    return row == ports.end() ? std::nullopt : std::optional(row->second);
}

bool InterfaceTable::setMirroring(const NetfpMaster_SetPortMirroring& request) {
    const auto isPort = [&](std::int32_t port) {
        return std::ranges::any_of(ports, [&](const auto& row) { return row.second == port; });
    };
    const bool knownDirection =
        request.direction == Netfp_Direction_INBOUND || request.direction == Netfp_Direction_OUTBOUND;
    if (!knownDirection || !isPort(request.fromPort) || !isPort(request.toPort) ||
        request.fromPort == request.toPort || request.enable > 1) {
        return false;
    }
    const std::pair key(request.direction, request.fromPort);
    if (request.enable == 1) {
        mirrors[key] = request.toPort;
    } else {
        mirrors.erase(key);
    }
    return true;
}

bool InterfaceTable::rename(std::string_view currentName, const std::string& newName) {
    const auto row = ports.find(currentName);
    if (row == ports.end() || newName.empty() || ports.contains(newName)) {
        return false;
    }
    auto node = ports.extract(row);
    node.key() = newName;
    ports.insert(std::move(node));
    return true;
}

bool InterfaceTable::addMulticast(const NetfpMaster_AddMulticastMac& request) {
    const std::string interface = fieldText(request.interfaceName);
    const bool isGroup = (request.mac[0] & 1U) != 0;
    if (!portOf(interface) || !isGroup || request.ignoreVlan != (request.vlanId == 0 ? 1U : 0U)) {
        return false;
    }
    std::ostringstream filter;
    filter << fieldText(request.regionName) << ' ' << interface << ' ' << macText(request.mac) << std::hex
           << std::setfill('0') << " type 0x" << std::setw(4) << request.etherType << " vlan ";
    if (request.ignoreVlan != 0) {
        filter << "any";
    } else {
        filter << std::dec << request.vlanId;
    }
    multicastFilters.push_back(filter.str());
    return true;
}

std::string InterfaceTable::text() const {
    std::ostringstream out;
    out << "interfaces:\n";
    for (const auto& [interface, port] : ports) {
        out << "  " << interface << " port " << port << '\n';
    }
    out << "mirroring:\n";
    for (const auto& [key, to] : mirrors) {
        out << "  " << (key.first == Netfp_Direction_INBOUND ? "inbound" : "outbound") << " port "
            << +key.second << " to port " << +to << '\n';
    }
    out << (multicastFilters.empty() ? "" : "multicast:\n");
    for (const std::string& filter : multicastFilters) {
        out << "  " << filter << '\n';
    }
    return out.str();
}

}  // namespace Boardsim
