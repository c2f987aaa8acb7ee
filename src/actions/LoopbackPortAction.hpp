#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "loopbackport": enables or disables serial-interface loopback of an external switch port, by writing the
/// port's SGMII registers with the command "devmem".
class LoopbackPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// Returns false if the command line is invalid or the port is not available. Ignores failed register
    /// writes. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Writes the registers of port 1 to 4 in sequence; reads none back. If a command cannot be started,
    /// reports that, stops and returns false.
    static bool executeLoopbackCommand(bool enable, int port);

private:
    const std::string keyword = "loopbackport";
};

}  // namespace Korvel
