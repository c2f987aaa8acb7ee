// The help text of the whole program. Each manager prints its block.

#include <string>

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "KorvelHelp.hpp"
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
};

}  // namespace

TEST_F(PrintUsage, ShowsTheCommonArgumentsWithTheDefaultsSwapped) {
    EXPECT_EQ(usage(), (Printed{.out = commonArgumentsHelp()}));
}

TEST_F(PrintUsage, ShowsThePathsThatAreSet) {
    NetFPMasterCom::setClientSocketPath("/tmp/client");
    NetFPMasterCom::setMasterSocketPath("/tmp/master");

    EXPECT_EQ(usage(), (Printed{.out = commonArgumentsHelp("/tmp/client", "/tmp/master")}));
}

TEST_F(PrintUsage, ShowsTheBlockOfEachManagerIndentedByFourBlanks) {
    Korvel::registerManagers();
    const Printed blocks = printedBy([] {
        for (const auto& manager : Korvel::managers) {
            manager->printHelpMsg("    ", "korvel");
        }
    });

    EXPECT_EQ(usage(), (Printed{.out = commonArgumentsHelp() + blocks.out}));
}

TEST_F(PrintUsage, PrintsNothingWithoutAProgramName) {
    Korvel::registerManagers();

    EXPECT_EQ(printedBy([] { Korvel::printUsage(0, nullptr); }), Printed{});
}
