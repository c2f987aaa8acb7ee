#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "getport": prints the switch port (1 to 4) behind a Linux interface, as known to the NetFP master. A port
/// number is only validated and printed.
class GetPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// Returns false if the argument is missing. Reports an unknown interface or an invalid port number, and
    /// returns true. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

private:
    const std::string keyword = "getport";
};

}  // namespace Korvel
