#pragma once

#include "SimpleAction.hpp"

namespace Korvel {

/// "getport": prints the switch port (1 to 4) behind a Linux interface, as the NetFP master knows it. A port
/// number is only checked and printed.
class GetPortAction : public SimpleAction {
public:
    std::string getKeyword() override;

    /// False where the argument is missing. An interface that is not known, or a number that is no port, is
    /// reported and true. Throws as resolvePort() does.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

private:
    const std::string keyword = "getport";
};

}  // namespace Korvel
