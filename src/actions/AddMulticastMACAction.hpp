#pragma once

#include <cstdint>
#include <string>

#include <net/ethernet.h>

#include "SimpleAction.hpp"

namespace Korvel {

/// "addmulticastmac": asks the NetFP master to admit frames to a multicast MAC address on an interface, from
/// one VLAN or from all.
class AddMulticastMACAction : public SimpleAction {
public:
    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Sends the request that run() parsed and waits for the response.
    bool addMulticastMAC();

private:
    bool parseArguments(int argc, char** argv);
    bool parseVlanId(const std::string& text);
    bool reportFailure(const char* step) const;

    const std::string keyword = "addmulticastmac";
    ether_addr mac{};
    std::string macString;
    std::string interfaceName;
    std::uint16_t vlanID = 0;  // 0: all VLANs
};

}  // namespace Korvel
