#include "MirrorPortAction.hpp"

#include "Console.hpp"
#include "EnableWord.hpp"
#include "NetFPMasterCom.hpp"
#include "PortArgument.hpp"

namespace Korvel {

std::string MirrorPortAction::getKeyword() {
    return keyword;
}

bool MirrorPortAction::run(int argc, char** argv) {
    progress("Port Mirroring Entry");
    if (argc <= 4) {
        return fail("Port Mirroring: Not enough arguments");
    }
    const std::optional<bool> enable = parseEnableWord(argv[2]);
    if (!enable) {
        return fail("Port Mirroring: Could not find enable/disable");
    }
    const int fromPort = retrievePortNumber(argv[3]);
    if (!isSwitchPort(fromPort)) {
        return fail("Port Mirroring: Invalid 'from' port number ");
    }
    const int toPort = retrievePortNumber(argv[4]);
    if (toPort <= 0) {  // the master rejects numbers beyond the last port
        return fail("Port Mirroring: Invalid 'to' port number ");
    }
    executePortMirrorCommand(*enable, fromPort, toPort);
    return true;
}

int MirrorPortAction::retrievePortNumber(const std::string& argument) {
    return resolvePort("Port Mirroring", argument);
}

void MirrorPortAction::executePortMirrorCommand(bool enable, int fromPort, int toPort) {
    NetFPMasterCom master;
    progress("Port Mirroring: ");
    progress(enable ? "Enabling" : "Disabling", " port ", fromPort, " ---> port ", toPort);
    if (!master.connect()) {
        return;
    }
    if (master.setPortMirroring(enable, Netfp_Direction_INBOUND, fromPort, toPort) &&
        master.setPortMirroring(enable, Netfp_Direction_OUTBOUND, fromPort, toPort)) {
        progress("Port Mirroring Request successful");
    }
    master.close();
}

void MirrorPortAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " enable from to:\n");
    print(indent, keyword, " disable from to:\n");
    print(indent, "  enable    (enable port mirroring)\n");
    print(indent, "  disable   (disable port mirroring)\n");
    print(indent, "  from      (interface or switch port to mirror from)\n");
    print(indent, "  to        (interface or switch port  to mirror to)\n");
    print(indent, "Examples:\n");
    print(indent, "  ", programName, " ", keyword, " enable eth0 eth1\n");
}

}  // namespace Korvel
