#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "NetfpMaster.hpp"

namespace Boardsim {

/// What the NetFP master knows of the board's Ethernet switch: interfaces, their ports, which port is
/// mirrored to which, and the multicast filters.
class InterfaceTable {
public:
    /// The switch port behind a Linux interface, if there is one of that name.
    std::optional<std::int32_t> portOf(std::string_view interface) const;

    /// Begins or ends mirroring of one port in one direction. False, and nothing changes, where the switch
    /// has no such port, the direction is unknown, or a port were to mirror itself.
    bool setMirroring(const NetfpMaster_SetPortMirroring& wish);

    /// Gives an interface another name. False, and nothing changes, where there is none of the current name,
    /// or the new one is empty or taken.
    bool rename(std::string_view currentName, const std::string& newName);

    /// Adds a filter for a multicast address. False, and nothing changes, where the interface is unknown, the
    /// address is none of a group, or a VLAN is both named and ignored.
    bool addMulticast(const NetfpMaster_AddMulticastMac& wish);

    /// Everything in the table, for people.
    std::string text() const;

private:
    std::map<std::string, std::int32_t, std::less<>> ports{
        {"eth0", 1}, {"eth1", 2}, {"eth2", 3}, {"eth3", 4}};
    std::map<std::pair<Netfp_Direction, std::uint8_t>, std::uint8_t> mirrors;  // direction and from: to
    std::vector<std::string> multicastFilters;                                 // as text() shows them
};

}  // namespace Boardsim
