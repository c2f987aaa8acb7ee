#include "PortSwapAction.hpp"

#include <cstddef>

#include "Console.hpp"
#include "NetFPMasterCom.hpp"

namespace Korvel {
namespace {

constexpr const char* temporaryName = "tmpN";

/// Copies a name into a zeroed field. Returns false, and copies nothing, if the name and a terminating zero
/// do not fit.
template <std::size_t size>
bool copyName(const std::string& name, char (&field)[size]) {
    if (name.size() >= size) {
        return false;
    }
    name.copy(field, size);
    return true;
}

}  // namespace

std::string PortSwapAction::getKeyword() {
    return keyword;
}

bool PortSwapAction::run(int argc, char** argv) {
    progress("PortSwap Entry");
    if (argc <= 3) {
        return fail("PortSwap : Not enough arguments");
    }
    interfaces[0] = argv[2];
    interfaces[1] = argv[3];
    const auto& [from, to] = interfaces;
    const int fromBefore = getIntfPort(from);
    const int toBefore = getIntfPort(to);
    if (fromBefore < 0 || toBefore < 0) {
        return fail("PortSwap : can't get interface's port (", fromBefore, ",", toBefore, ")");
    }
    progress("PortSwap: before swap ports: (", fromBefore, ",", toBefore, ")");
    if (swapPort() < 0) {
        return fail("PortSwap : swap failed");
    }
    const int fromAfter = getIntfPort(from);
    const int toAfter = getIntfPort(to);
    return (fromBefore == toAfter && toBefore == fromAfter) ||
           fail("PortSwap : swap failed: (", fromBefore, ",", toBefore, ";", fromAfter, ",", toAfter, ")");
}

int PortSwapAction::getIntfPort(const std::string& interfaceName) {
    NetFPMasterCom master;
    if (!master.connect()) {
        return -1;
    }
    const int port = master.getSwitchPortForInterface(interfaceName);
    master.close();
    return port;
}

int PortSwapAction::renameIntf(const std::string& currentName, const std::string& newName) {
    NetfpMaster_Request request{};
    request.type = NETFP_MASTER_RENAME_INTERFACE;
    const bool fits = copyName(currentName, request.body.renameInterface.currentName) &&
                      copyName(newName, request.body.renameInterface.newName);
    NetFPMasterCom master;
    if (!master.connect()) {
        return -1;
    }
    if (!fits || !master.sendNetFPRequest(&request)) {
        fail("PortSwap : rename send failed : (", currentName, ",", newName, ")");
        return -1;
    }
    if (!master.receiveNetFpResponse(nullptr)) {
        fail("PortSwap : rename recv failed : (", currentName, ",", newName, ")");
        return -1;
    }
    return 0;
}

int PortSwapAction::swapPort() {
    const auto& [from, to] = interfaces;
    if (renameIntf(from, temporaryName) < 0) {
        fail("PortSwap : swap failed : from ", from, " to ", temporaryName);
        return -1;
    }
    if (renameIntf(to, from) < 0) {
        fail("PortSwap : swap failed : from  ", to, " to ", from);
        renameIntf(temporaryName, from);
        return -1;
    }
    if (renameIntf(temporaryName, to) < 0) {
        fail("PortSwap : swap failed from tmpN to ", to);
        renameIntf(from, to);
        renameIntf(temporaryName, from);
        return -1;
    }
    return 0;
}

void PortSwapAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " from to:\n");
    print(indent, "  from      (interface to swap from)\n");
    print(indent, "  to        (interface to swap to)\n");
    print(indent, "Examples:\n");
    print(indent, "  ", programName, " ", keyword, " eth0 eth1\n");
}

}  // namespace Korvel
