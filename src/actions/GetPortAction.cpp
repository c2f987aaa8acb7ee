#include "GetPortAction.hpp"

#include "Console.hpp"
#include "PortArgument.hpp"

namespace Korvel {
namespace {

void printPort(int port, const std::string& argument) {
    if (!isSwitchPort(port)) {
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
    printPort(resolvePort("Get Port", argument), argument);
    return true;
}

void GetPortAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " interface:\n");
    print(indent, "  interface (interface name to get the port from)\n");
    print(indent, "Examples:\n");
    print(indent, "  ", programName, " ", keyword, " eth1\n");
}

}  // namespace Korvel
