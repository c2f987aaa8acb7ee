#pragma once

#include <string>

#include "SimpleAction.hpp"

namespace Korvel {

/// "portswap": exchanges the switch ports behind two Linux interfaces, by having the NetFP master rename the
/// interfaces in three steps; a step that fails takes the earlier ones back.
class PortSwapAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// True when the ports were seen to be exchanged afterwards.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run(), each with a connection of its own. Below zero is a failure, which they report,
    // other than a look-up that runs out of time.

    /// The switch port behind an interface, or -1, as the master says.
    static int getIntfPort(const std::string& interfaceName);

    /// A name of 32 characters or more is not sent.
    static int renameIntf(const std::string& currentName, const std::string& newName);

    /// Exchanges the names of the two interfaces of this run.
    int swapPort();

private:
    const std::string keyword = "portswap";
    std::string interfaces[2];  // from, to
};

}  // namespace Korvel
