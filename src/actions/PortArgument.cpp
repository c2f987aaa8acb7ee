#include "PortArgument.hpp"

#include <stdexcept>

#include "Console.hpp"
#include "NetFPMasterCom.hpp"
#include "Number.hpp"

namespace Korvel {
namespace {

constexpr int firstPort = 1;
constexpr int lastPort = 4;

int lookUpPort(const std::string& interfaceName) {
    NetFPMasterCom master;
    if (!master.connect()) {
        return noPort;
    }
    const int port = master.getSwitchPortForInterface(interfaceName);
    master.close();
    return port < 0 ? noPort : port;
}

}  // namespace

int resolvePort(const std::string& action, const std::string& argument) {
    progress(action, ": Retrieving port number for \"", argument, "\"");
    int port = noPort;
    switch (parseNumber(argument, port)) {
        case NumberError::none:
            progress(action, ": Using port number value");
            break;
        case NumberError::noDigits:
            break;
        case NumberError::outOfRange:
            throw std::out_of_range(action + ": Port number out of range \"" + argument + "\"");
    }
    return port < 0 ? lookUpPort(argument) : port;
}

bool isSwitchPort(int port) {
    return port >= firstPort && port <= lastPort;
}

}  // namespace Korvel
