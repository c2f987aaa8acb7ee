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

/// The NetFP master's view of the board's Ethernet switch: interfaces, ports, port mirroring and multicast
/// filters.
class InterfaceTable {
public:
    /// The switch port of a Linux interface, if there is one with this name.
    std::optional<std::int32_t> portOf(std::string_view interface) const;

    /// Starts or stops mirroring one port in one direction. Returns false and changes nothing if a field is
    /// invalid, or if both ports are the same.
    bool setMirroring(const NetfpMaster_SetPortMirroring& request);

    /// Renames an interface. Returns false and changes nothing if the current name is unknown, or if the new
    /// name is empty or taken.
    bool rename(std::string_view currentName, const std::string& newName);

    /// Adds a multicast filter. Returns false and changes nothing if the interface is unknown or the address
    /// is not a group address. The same applies if vlanId and ignoreVlan contradict each other.
    bool addMulticast(const NetfpMaster_AddMulticastMac& request);

    /// The whole table, for people.
    std::string text() const;

private:
    std::map<std::string, std::int32_t, std::less<>> ports{
        {"eth0", 1}, {"eth1", 2}, {"eth2", 3}, {"eth3", 4}};
    /// Direction and source port: target port.
    std::map<std::pair<Netfp_Direction, std::uint8_t>, std::uint8_t> mirrors;
    std::vector<std::string> multicastFilters;  // one line of text() each
};

}  // namespace Boardsim
