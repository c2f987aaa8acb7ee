#pragma once

#include <string>

#include "SimpleAction.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// "add_interface": has netfp_proxy take a Linux network interface under its management, and prints whether
/// it did and what it answered if not. All of that goes to standard output; why the exchange itself failed is
/// in the dispatcher's shared-memory log.
class AddInterfaceAction : public SimpleAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Takes the interface's name, of 1 to 31 bytes. False, with the reason printed, where it is none.
    bool parseParameters(int argc, char** argv);

    /// The exchange with netfp_proxy. True when that has the interface under its management.
    bool handleRequest();

private:
    std::string interfaceName;
    SmLog* logClient = nullptr;  // the library's; null where the log cannot be had
};

}  // namespace Korvel
