#pragma once

#include <string>

#include "SimpleAction.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// "add_interface": asks netfp_proxy to manage a Linux network interface. Prints the result, and
/// netfp_proxy's status if it refuses, on standard output. Logs failures of the exchange in the dispatcher's
/// shared-memory log.
class AddInterfaceAction : public SimpleAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Stores the interface name (1 to 31 bytes). Prints the reason and returns false if it is invalid.
    bool parseParameters(int argc, char** argv);

    /// Sends the request and waits for the response. Returns true if netfp_proxy now manages the interface.
    bool handleRequest();

private:
    std::string interfaceName;
    SmLog* logClient = nullptr;  // owned by the library; null if the log is not available
};

}  // namespace Korvel
