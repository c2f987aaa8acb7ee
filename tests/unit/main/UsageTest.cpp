// The help text of the whole program, of which each manager prints its block.

#include <string>

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "Managers.hpp"
#include "NetFPMasterCom.hpp"
#include "Printed.hpp"
#include "Usage.hpp"

using Korvel::NetFPMasterCom;

namespace {

class PrintUsage : public testing::Test {
protected:
    void TearDown() override {
        Korvel::managers.clear();
        NetFPMasterCom::setMasterSocketPath("/tmp/NetfpMaster");
        NetFPMasterCom::setClientSocketPath("/tmp/Korvel");
    }

    static Printed usage() {
        ArgumentVector vector({});
        return printedBy([&] { Korvel::printUsage(vector.argc(), vector.argv()); });
    }

    /// What stands in front of the managers' blocks.
    static std::string commonArguments(const std::string& clientDefault, const std::string& masterDefault) {
        return "korvel usage:\n"
               "  Common Arguments:\n"
               "    -v         (verbose mode)\n"
               "    -c path    (optional path to the client socket, default: " +
               clientDefault +
               "\n"
               "    -m path    (optional path to the master socket, default: " +
               masterDefault +
               "\n"
               "    -d type    (interact with specific dispatcher: iwf, sfn, all. Default is \"iwf\")\n"
               "    --help     (help message)\n"
               "\n";
    }
};

}  // namespace

TEST_F(PrintUsage, ShowsTheCommonArgumentsWithTheDefaultsCrosswise) {
    EXPECT_EQ(usage(), (Printed{.out = commonArguments("/tmp/NetfpMaster", "/tmp/Korvel")}));
}

TEST_F(PrintUsage, ShowsThePathsThatAreSet) {
    NetFPMasterCom::setClientSocketPath("/tmp/client");
    NetFPMasterCom::setMasterSocketPath("/tmp/master");

    EXPECT_EQ(usage(), (Printed{.out = commonArguments("/tmp/master", "/tmp/client")}));
}

TEST_F(PrintUsage, ShowsTheBlockOfEachManagerIndentedByFourBlanks) {
    Korvel::registerManagers();
    const Printed blocks = printedBy([] {
        for (const auto& manager : Korvel::managers) {
            manager->printHelpMsg("    ", "korvel");
        }
    });

    EXPECT_EQ(usage(), (Printed{.out = commonArguments("/tmp/NetfpMaster", "/tmp/Korvel") + blocks.out}));
}

TEST_F(PrintUsage, PrintsNothingWithoutAProgramName) {
    Korvel::registerManagers();

    EXPECT_EQ(printedBy([] { Korvel::printUsage(0, nullptr); }), Printed{});
}
