#pragma once

#include <string>
#include <string_view>

#include "SimpleAction.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// "add_interface": has netfp_proxy take a Linux network interface under its management, and prints whether
/// it did. All of that goes to standard output; why the exchange failed is in the dispatcher's shared-memory
/// log.
class AddInterfaceAction : public SimpleAction {
public:
    static constexpr std::string_view keyword = "add_interface";

    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

private:
    bool parseParameters(int argc, char** argv);
    bool handleRequest();

    std::string interfaceName;
    SmLog* logClient = nullptr;  // the library's; null where the log cannot be had
};

}  // namespace Korvel
