#include "Usage.hpp"

#include "Console.hpp"
#include "Managers.hpp"
#include "NetFPMasterCom.hpp"

namespace Korvel {

void printUsage(int argc, char** argv) {
    if (argc == 0) {
        return;
    }
    // The two defaults are swapped and lack a ")". Scripts compare this text, so it must not change.
    print(argv[0], " usage:\n",
          "  Common Arguments:\n"
          "    -v         (verbose mode)\n"
          "    -c path    (optional path to the client socket, default: ",
          NetFPMasterCom::getMasterSocketPath(), "\n",
          "    -m path    (optional path to the master socket, default: ",
          NetFPMasterCom::getClientSocketPath(), "\n",
          "    -d type    (interact with specific dispatcher: iwf, sfn, all. Default is \"iwf\")\n"
          "    --help     (help message)\n"
          "\n");
    for (const auto& manager : managers) {
        manager->printHelpMsg("    ", argv[0]);
    }
}

}  // namespace Korvel
