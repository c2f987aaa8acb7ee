#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "mirrorport": has the NetFP master copy the traffic of one switch port, in both directions, to another, or
/// stop doing so.
class MirrorPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// False where the command line is wrong or a port is not to be had. What the master says to the requests
    /// themselves is reported and true. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// The switch port behind an interface's name or a number, or noPort; see resolvePort().
    static int retrievePortNumber(const std::string& argument);

    /// Sends the request for the inbound direction and, where that succeeds, for the outbound one.
    static void executePortMirrorCommand(bool enable, int fromPort, int toPort);

private:
    const std::string keyword = "mirrorport";
};

}  // namespace Korvel
