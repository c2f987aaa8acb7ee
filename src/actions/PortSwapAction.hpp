#pragma once

#include <string>

#include "SimpleAction.hpp"

namespace Korvel {

/// "portswap": exchanges the switch ports of two Linux interfaces. Asks the NetFP master to rename the
/// interfaces in three steps. If a step fails, undoes the earlier steps.
class PortSwapAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// Returns true if a look-up afterwards confirms the exchange.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run(). Each opens its own connection. They report failures, except a look-up that times
    // out, and return a negative value.

    /// Returns the switch port of an interface as reported by the master, or -1.
    static int getIntfPort(const std::string& interfaceName);

    /// Names of 32 or more characters are not sent and count as a failure.
    static int renameIntf(const std::string& currentName, const std::string& newName);

    /// Exchanges the names of the two interfaces.
    int swapPort();

private:
    const std::string keyword = "portswap";
    std::string interfaces[2];  // from, to
};

}  // namespace Korvel
