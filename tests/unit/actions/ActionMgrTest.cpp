// The manager of the one-shot actions: look-up, execution, help.

#include <gtest/gtest.h>

#include "ActionMgr.hpp"
#include "ArgumentVector.hpp"
#include "Printed.hpp"
#include "VerboseMode.hpp"

namespace {

class ActionMgrTest : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    bool detect(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        bool detected = false;
        printed = printedBy([&] { detected = manager.detectKeywords(arguments.argc(), arguments.argv()); });
        return detected;
    }

    bool resolve(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        bool success = false;
        printed = printedBy([&] { success = manager.resolveRequest(arguments.argc(), arguments.argv()); });
        return success;
    }

    Korvel::ActionMgr manager;
    Printed printed;
};

}  // namespace

TEST_F(ActionMgrTest, IsNamedAction) {
    EXPECT_EQ(manager.getName(), "Action");
}

TEST_F(ActionMgrTest, DetectsNothingWithoutArguments) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(detect({}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, DetectsAnActionKeyword) {
    EXPECT_TRUE(detect({"getport"}));
    EXPECT_TRUE(detect({"getport", "eth0"}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, ComparesKeywordsWholeAndCaseSensitively) {
    for (const std::string word : {"GetPort", "GETPORT", "getpor", "getports", " getport", "getport ", ""}) {
        EXPECT_FALSE(detect({word})) << word;
    }
}

TEST_F(ActionMgrTest, LooksAtTheFirstArgumentAlone) {
    EXPECT_FALSE(detect({"eth0", "getport"}));
    EXPECT_FALSE(detect({"print", "getport", "getport"}));
}

TEST_F(ActionMgrTest, TellsInVerboseModeWhatItLooksUp) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(detect({"print", "getport"}));
    EXPECT_EQ(printed, (Printed{.out = "Looking up Action keyword \"print\"\n"}));

    EXPECT_TRUE(detect({"getport"}));
    EXPECT_EQ(printed, (Printed{.out = "Looking up Action keyword \"getport\"\n"}));
}

TEST_F(ActionMgrTest, RunsTheActionAndReturnsItsResult) {
    EXPECT_TRUE(resolve({"getport", "4"}));
    EXPECT_EQ(printed, (Printed{.out = "4\n"}));

    EXPECT_FALSE(resolve({"getport"}));
    EXPECT_EQ(printed, (Printed{.err = "Get Port: Not enough arguments\n"}));
}

TEST_F(ActionMgrTest, TellsInVerboseModeWhatItExecutesBeforeTheActionsOwnOutput) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(resolve({"getport", "4"}));

    EXPECT_EQ(printed, (Printed{.out = "Executing \"getport\" action\n"
                                       "Get Port Entry\n"
                                       "Get Port: Retrieving port number for \"4\"\n"
                                       "Get Port: Using port number value\n"
                                       "4\n"}));
}

TEST_F(ActionMgrTest, FailsWithoutAWordForAKeywordThatIsNone) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(resolve({"print"}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, ListsTheActionsInTheirOrder) {
    EXPECT_EQ(
        printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
        (Printed{
            .out =
                "  Actions:\n"
                "<>==============\n"
                "<>  getport interface:\n"
                "<>    interface (interface name to get the port from)\n"
                "<>  Examples:\n"
                "<>    /bin/k getport eth1\n"
                "<>==============\n"
                "<>  mirrorport enable from to:\n"
                "<>  mirrorport disable from to:\n"
                "<>    enable    (enable port mirroring)\n"
                "<>    disable   (disable port mirroring)\n"
                "<>    from      (interface or switch port to mirror from)\n"
                "<>    to        (interface or switch port  to mirror to)\n"
                "<>  Examples:\n"
                "<>    /bin/k mirrorport enable eth0 eth1\n"
                "<>==============\n"
                "<>  loopbackport enable interface:\n"
                "<>  loopbackport disable interface:\n"
                "<>    enable    (enable Loopback Port)\n"
                "<>    disable   (disable Loopback Port)\n"
                "<>    interface (interface or switch port to loopback)\n"
                "<>  Examples:\n"
                "<>    /bin/k loopbackport enable eth0\n"
                "<>==============\n"
                "<>  portswap from to:\n"
                "<>    from      (interface to swap from)\n"
                "<>    to        (interface to swap to)\n"
                "<>  Examples:\n"
                "<>    /bin/k portswap eth0 eth1\n"
                "<>==============\n"
                "<>  addmulticastmac MAC interfaceName [vlanID]:\n"
                "<>    MAC              (MAC address in format xx:xx:xx:xx:xx:xx)\n"
                "<>    interfaceName    (interface to use)\n"
                "<>    vlanID           (vlan number)\n"
                "<>    NOTE: if vlanID is not specified or the provided value is 0 then VLAN will not be "
                "matched\n"
                "<>==============\n"
                "<>  resetqosstats\n"
                "<>  Examples:\n"
                "<>  /bin/k -d iwf resetqosstats\n"
                "<>==============\n"
                "<>  mem_dump <physical_address> <length>\n"
                "<>  Example:\n"
                "<>  /bin/k mem_dump 0xeb6b6100 32 - dumps 32 bytes located at physical address 0xeb6b6100\n"
                "\n"
                "<>==============\n"
                "<>  desc_dump <physical_address> [buf_length]\n"
                "<>  Examples:\n"
                "<>  /bin/k desc_dump 0xeb6b6100 - dumps descriptor in physical address 0xeb6b6100\n"
                "<>  /bin/k desc_dump 0xeb6b6100 32 - dumps descriptor in physical address 0xeb6b6100 and "
                "first 32 bytes of its buffer\n"
                "\n"
                "<>==============\n"
                "<>   /bin/k add_interface <interface_name>"}));
}

TEST_F(ActionMgrTest, HasNothingLeftToDoAfterTheRequest) {
    EXPECT_TRUE(manager.run());
}
