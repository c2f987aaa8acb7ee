#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "loopbackport": puts an external port of the switch into serial-interface loopback, or takes it out, by
/// writing the port's SGMII registers with the command "devmem".
class LoopbackPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// False where the command line is wrong or the port is not to be had. Whether the registers were written
    /// does not count. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Writes the registers of a port from 1 to 4, one after the other; none is read back. A command that
    /// cannot be started is reported and ends the sequence, which is then false.
    static bool executeLoopbackCommand(bool enable, int port);

private:
    const std::string keyword = "loopbackport";
};

}  // namespace Korvel
