#include "AddMulticastMACAction.hpp"

#include <algorithm>
#include <iterator>

#include <netinet/ether.h>

#include "Console.hpp"
#include "NetFPMasterCom.hpp"
#include "Number.hpp"

namespace Korvel {
namespace {

const std::string regionName = "lut10_region_mac";
constexpr std::size_t maximumInterfaceNameLength = sizeof NetfpMaster_AddMulticastMac::interfaceName - 1;

}  // namespace

std::string AddMulticastMACAction::getKeyword() {
    return keyword;
}

bool AddMulticastMACAction::run(int argc, char** argv) {
    progress("AddMulticastMac Entry");
    if (!parseArguments(argc, argv)) {
        return false;
    }
    return addMulticastMAC() || fail("AddMulticastMAC failed");
}

bool AddMulticastMACAction::parseArguments(int argc, char** argv) {
    if (argc <= 3) {
        return fail("AddMulticastMac : Not enough arguments");
    }
    macString = argv[2];
    if (::ether_aton_r(macString.c_str(), &mac) == nullptr) {
        return fail("AddMulticastMac : Cannot parse MAC address: ", macString);
    }
    interfaceName = argv[3];
    if (interfaceName.size() > maximumInterfaceNameLength) {
        return fail("AddMulticastMac : Interface name is too long: ", interfaceName.size(),
                    ", ifName: ", interfaceName,
                    " Maximum supported length is: ", maximumInterfaceNameLength);
    }
    if (argc > 4) {
        return parseVlanId(argv[4]);
    }
    vlanID = 0;
    progress("AddMulticastMac Entry: vlanID not specified. Using default value: vlanID: ", vlanID);
    return true;
}

/// Larger numbers are truncated to their low 16 bits.
bool AddMulticastMACAction::parseVlanId(const std::string& text) {
    unsigned long number = 0;
    if (parseWholeNumber(text, number) != NumberError::none) {
        return fail("AddMulticastMac : Cannot parse vlanID (not a number): ", text);
    }
    vlanID = static_cast<std::uint16_t>(number);
    return true;
}

bool AddMulticastMACAction::addMulticastMAC() {
    NetfpMaster_Request request{};
    request.type = NETFP_MASTER_ADD_MULTICAST_MAC;
    NetfpMaster_AddMulticastMac& filter = request.body.addMulticastMac;
    regionName.copy(filter.regionName, sizeof filter.regionName - 1);
    filter.etherType = ETHERTYPE_IP;
    filter.vlanId = vlanID;
    filter.ignoreVlan = vlanID == 0 ? 1 : 0;
    std::copy(std::begin(mac.ether_addr_octet), std::end(mac.ether_addr_octet), std::begin(filter.mac));
    interfaceName.copy(filter.interfaceName, maximumInterfaceNameLength);
    filter.always1 = 1;
    NetFPMasterCom master;
    if (!master.connect()) {
        return false;
    }
    if (!master.sendNetFPRequest(&request)) {
        return reportFailure("AddMulticastMAC send failed : (");
    }
    return master.receiveNetFpResponse(nullptr) || reportFailure("AddMulticastMAC recv failed : (");
}

bool AddMulticastMACAction::reportFailure(const char* step) const {
    return fail(step, "MAC: ", macString, ", interface: ", interfaceName, ", vlanID: ", vlanID, ")");
}

void AddMulticastMACAction::printHelpMsg(const std::string& indent, const std::string& /*programName*/) {
    print(indent, keyword, " MAC interfaceName [vlanID]:\n");
    print(indent, "  MAC              (MAC address in format xx:xx:xx:xx:xx:xx)\n");
    print(indent, "  interfaceName    (interface to use)\n");
    print(indent, "  vlanID           (vlan number)\n");
    print(indent,
          "  NOTE: if vlanID is not specified or the provided value is 0 then VLAN will not be matched\n");
}

}  // namespace Korvel
