#include "GetPortAction.hpp"

#include "Console.hpp"
#include "NetFPMasterCom.hpp"
#include "Number.hpp"

namespace Korvel {
namespace {

constexpr int noPort = -1;
constexpr int firstPort = 1;
constexpr int lastPort = 4;

/// Asks the NetFP master. noPort, with the reason reported, where that fails.
int lookUpPort(const std::string& interfaceName) {
    NetFPMasterCom master;
    if (!master.connect()) {
        return noPort;
    }
    const int port = master.getSwitchPortForInterface(interfaceName);
    master.close();
    return port;
}

void printPort(int port, const std::string& argument) {
    if (port < firstPort || port > lastPort) {
        fail("Get Port: Invalid port number \"", argument, "\"");
    } else {
        print(port, '\n');
    }
}

}  // namespace

std::string GetPortAction::getKeyword() {
    return keyword;
}

bool GetPortAction::run(int argc, char** argv) {
    progress("Get Port Entry");
    if (argc <= 2) {
        return fail("Get Port: Not enough arguments");
    }
    const std::string argument = argv[2];
    progress("Get Port: Retrieving port number for \"", argument, "\"");
    int port = noPort;
    switch (parseNumber(argument, port)) {
        case NumberError::none:
            progress("Get Port: Using port number value");
            break;
        case NumberError::noDigits:
            break;
        case NumberError::outOfRange:
            return fail("Get Port: Port number out of range \"", argument, "\"");
    }
    if (port < 0) {
        port = lookUpPort(argument);
    }
    printPort(port, argument);
    return true;
}

void GetPortAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " interface:\n");
    print(indent, "  interface (interface name to get the port from)\n");
    print(indent, "Examples:\n");
    print(indent, "  ", programName, " ", keyword, " eth1\n");
}

}  // namespace Korvel
