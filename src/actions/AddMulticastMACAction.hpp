#pragma once

#include <cstdint>
#include <string>

#include <net/ethernet.h>

#include "SimpleAction.hpp"

namespace Korvel {

/// "addmulticastmac": has the NetFP master let frames to a multicast MAC address through to an interface, of
/// one VLAN or of all.
class AddMulticastMACAction : public SimpleAction {
public:
    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// The exchange with the master about what run() took from the command line.
    bool addMulticastMAC();

private:
    bool parseArguments(int argc, char** argv);
    bool parseVlanId(const std::string& text);
    bool reportExchange(const char* step) const;

    const std::string keyword = "addmulticastmac";
    ether_addr mac{};
    std::string macString;
    std::string interfaceName;
    std::uint16_t vlanID = 0;  // 0: every VLAN
};

}  // namespace Korvel
