#include "InterfaceTable.hpp"

#include <algorithm>
#include <sstream>

std::optional<std::int32_t> InterfaceTable::portOf(std::string_view interface) const {
    const auto row = ports.find(interface);
    return row == ports.end() ? std::nullopt : std::optional(row->second);
}

bool InterfaceTable::setMirroring(const NetfpMaster_SetPortMirroring& wish) {
    const auto isPort = [&](std::int32_t port) {
        return std::ranges::any_of(ports, [&](const auto& row) { return row.second == port; });
    };
    const bool knownDirection =
        wish.direction == Netfp_Direction_INBOUND || wish.direction == Netfp_Direction_OUTBOUND;
    if (!knownDirection || !isPort(wish.fromPort) || !isPort(wish.toPort) || wish.fromPort == wish.toPort ||
        wish.enable > 1) {
        return false;
    }
    const std::pair key(wish.direction, wish.fromPort);
    if (wish.enable == 1) {
        mirrors[key] = wish.toPort;
    } else {
        mirrors.erase(key);
    }
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
    return out.str();
}
