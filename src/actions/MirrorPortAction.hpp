#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "mirrorport": asks the NetFP master to start or stop copying the traffic of one switch port, in both
/// directions, to another.
class MirrorPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// Returns false if the command line is invalid or a port is not available. If a request fails, reports
    /// that and returns true. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Returns the switch port of an interface name or a number, or noPort; see resolvePort().
    static int retrievePortNumber(const std::string& argument);

    /// Sends the request for the inbound direction and, if that succeeds, for the outbound direction.
    static void executePortMirrorCommand(bool enable, int fromPort, int toPort);

private:
    const std::string keyword = "mirrorport";
};

}  // namespace Korvel
