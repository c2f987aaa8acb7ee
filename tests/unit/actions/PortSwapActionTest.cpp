// "portswap": swaps the switch ports of two interfaces.

#include <set>

#include "KorvelHelp.hpp"
#include "NetfpMasterWire.hpp"
#include "PortSwapFixture.hpp"
#include "VerboseMode.hpp"

namespace {

class PortSwapActionTest : public PortSwapFixture {};

}  // namespace

TEST_F(PortSwapActionTest, SwapsTheNamesThroughATemporaryOneAndChecksTheResult) {
    givenRenamingMaster();

    EXPECT_TRUE(swap({"eth0", "eth1"}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requestsWithoutIdentifiers(),
              (Lines{lookUp("eth0"), lookUp("eth1"), rename("eth0", "tmpN"), rename("eth1", "eth0"),
                     rename("tmpN", "eth1"), lookUp("eth0"), lookUp("eth1")}));
}

TEST_F(PortSwapActionTest, SendsARenameOf148BytesWithBothNamesZeroPadded) {
    givenRenamingMaster();

    EXPECT_EQ(Korvel::PortSwapAction::renameIntf("eth0", "tmpN"), 0);

    std::string expected(148, '\0');
    expected[0] = 6;
    expected.replace(8, 4, "eth0").replace(40, 4, "tmpN");
    EXPECT_EQ(requestsWithoutIdentifiers(), Lines{expected});
}

TEST_F(PortSwapActionTest, OpensAConnectionForEachRequest) {
    givenRenamingMaster();

    swap({"eth0", "eth1"});

    std::set<std::uint32_t> identifiers;  // each connection starts with a random one
    for (const std::string& request : master.requests()) {
        identifiers.insert(idOfRequest(request));
    }
    EXPECT_EQ(identifiers.size(), 7);
}

TEST_F(PortSwapActionTest, NeedsTwoInterfaces) {
    for (const Lines& interfaces : {Lines{}, Lines{"eth0"}}) {
        EXPECT_FALSE(swap(interfaces));
        EXPECT_EQ(printed, (Printed{.err = "PortSwap : Not enough arguments\n"}));
    }
    EXPECT_EQ(requestsWithoutIdentifiers(), Lines{});
}

TEST_F(PortSwapActionTest, IgnoresFurtherArguments) {
    givenRenamingMaster();

    EXPECT_TRUE(swap({"eth0", "eth1", "eth2", "x"}));
    EXPECT_EQ(printed, Printed{});
}

TEST_F(PortSwapActionTest, TreatsPortNumbersAsInterfaceNames) {
    givenRenamingMaster({{"1", 1}, {"2", 2}});

    EXPECT_TRUE(swap({"1", "2"}));
    EXPECT_EQ(requestsWithoutIdentifiers().front(), lookUp("1"));
}

TEST_F(PortSwapActionTest, RenamesNothingIfAnInterfaceIsUnknown) {
    const struct {
        Lines interfaces;
        std::string message;
    } cases[] = {
        {{"eth9", "eth1"}, std::string(refused) + "PortSwap : can't get interface's port (-1,2)\n"},
        {{"eth0", "eth9"}, std::string(refused) + "PortSwap : can't get interface's port (1,-1)\n"},
        {{"", "eth9"}, std::string(refused) + refused + "PortSwap : can't get interface's port (-1,-1)\n"},
    };
    givenRenamingMaster();
    Lines expected;
    for (const auto& [interfaces, message] : cases) {
        EXPECT_FALSE(swap(interfaces));
        EXPECT_EQ(printed, Printed{.err = message});
        expected.insert(expected.end(), {lookUp(interfaces[0]), lookUp(interfaces[1])});
    }
    EXPECT_EQ(requestsWithoutIdentifiers(), expected);
}

TEST_F(PortSwapActionTest, RenamesNothingIfTheMasterReturnsANegativePort) {
    givenRenamingMaster({{"eth0", 1}, {"eth1", -3}});

    expectFailure("PortSwap : can't get interface's port (1,-3)\n");
    EXPECT_EQ(requestsWithoutIdentifiers(), (Lines{lookUp("eth0"), lookUp("eth1")}));
}

TEST_F(PortSwapActionTest, AcceptsPort0) {
    givenRenamingMaster({{"eth0", 0}, {"eth1", 2}});

    EXPECT_TRUE(swap({"eth0", "eth1"}));
    EXPECT_EQ(printed, Printed{});
}

TEST_F(PortSwapActionTest, FailsIfTheMasterReportsRenamesThatItDidNotDo) {
    givenRenamingMaster({{1, Rename::ignored}, {2, Rename::ignored}, {3, Rename::ignored}});

    expectFailure("PortSwap : swap failed: (1,2;1,2)\n");
}

TEST_F(PortSwapActionTest, FailsIfAPortCannotBeCheckedAfterwards) {
    givenRenamingMaster({{3, Rename::ignored}});

    expectFailure(std::string(refused) + "PortSwap : swap failed: (1,2;2,-1)\n");
}

TEST_F(PortSwapActionTest, PrintsEachStepInVerboseMode) {
    givenRenamingMaster();
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(swap({"eth0", "eth1"}));

    const Lines requests = master.requests();
    ASSERT_EQ(requests.size(), 7);
    const std::string closed = "Client Socket closed\n";
    const auto lookingUp = [&](const std::string& name, std::size_t number, const std::string& port) {
        return connecting + ("Sending get interface request for \"" + name + "\"\n") +
               received(requests[number]) + "Receive Success Response.  Port Number: " + port + "\n" + closed;
    };
    const auto renaming = [&](std::size_t number) {
        return connecting + received(requests[number]) + closed;
    };
    EXPECT_EQ(printed,
              (Printed{.out = "PortSwap Entry\n" + lookingUp("eth0", 0, "1") + lookingUp("eth1", 1, "2") +
                              "PortSwap: before swap ports: (1,2)\n" + renaming(2) + renaming(3) +
                              renaming(4) + lookingUp("eth0", 5, "2") + lookingUp("eth1", 6, "1")}));
}

TEST_F(PortSwapActionTest, PrintsItsEntryInVerboseModeEvenWithoutArguments) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(swap({}));

    EXPECT_EQ(printed, (Printed{.out = "PortSwap Entry\n", .err = "PortSwap : Not enough arguments\n"}));
}

TEST_F(PortSwapActionTest, PrintsItsHelp) {
    EXPECT_EQ(action.getKeyword(), "portswap");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("portswap", "<>", "/bin/k")}));
}
