// "portswap" with an unreachable NetFP master or with names that do not fit.

#include "PortSwapFixture.hpp"

using Korvel::PortSwapAction;

namespace {

class PortSwapFailureTest : public PortSwapFixture {};

constexpr const char* noPorts = "PortSwap : can't get interface's port (-1,-1)\n";
constexpr std::size_t longestName = 31;

}  // namespace

TEST_F(PortSwapFailureTest, AcceptsNamesOf31Characters) {
    const std::string from(longestName, 'f');
    const std::string to(longestName, 't');
    givenRenamingMaster({{from, 3}, {to, 4}});

    EXPECT_TRUE(swap({from, to}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requestsWithoutIdentifiers(),
              (Lines{lookUp(from), lookUp(to), rename(from, "tmpN"), rename(to, from), rename("tmpN", to),
                     lookUp(from), lookUp(to)}));
}

TEST_F(PortSwapFailureTest, DoesNotRenameAnInterfaceWhoseNameIsTooLong) {
    for (const auto length : std::initializer_list<std::size_t>{32, 33, 4096}) {
        const std::string from(length, 'f');
        const std::string asked = from.substr(0, 32);
        givenRenamingMaster({{asked, 1}, {"eth1", 2}});
        const std::size_t before = master.requests().size();

        EXPECT_FALSE(swap({from, "eth1"}));

        std::string message = "PortSwap : rename send failed : (";
        message.append(from).append(",tmpN)\nPortSwap : swap failed : from ").append(from);
        message.append(" to tmpN\nPortSwap : swap failed\n");
        EXPECT_EQ(printed, Printed{.err = message});
        Lines sent = requestsWithoutIdentifiers();
        sent.erase(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(sent, (Lines{lookUp(asked), lookUp("eth1")}));
    }
}

TEST_F(PortSwapFailureTest, RevertsTheFirstRenameIfTheSecondNameIsTooLong) {
    const std::string to(longestName + 1, 't');
    givenRenamingMaster({{"eth0", 1}, {to, 2}});

    EXPECT_FALSE(swap({"eth0", to}));

    EXPECT_EQ(printed, (Printed{.err = "PortSwap : rename send failed : (" + to +
                                       ",eth0)\n"
                                       "PortSwap : swap failed : from  " +
                                       to +
                                       " to eth0\n"
                                       "PortSwap : swap failed\n"}));
    EXPECT_EQ(requestsWithoutIdentifiers(),
              (Lines{lookUp("eth0"), lookUp(to), rename("eth0", "tmpN"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapFailureTest, SendsNoRenameWithANameThatDoesNotFit) {
    const std::string longName(longestName + 1, 'n');

    const Printed asNew = printedBy([&] { EXPECT_EQ(PortSwapAction::renameIntf("eth0", longName), -1); });
    EXPECT_EQ(asNew, (Printed{.err = "PortSwap : rename send failed : (eth0," + longName + ")\n"}));

    EXPECT_EQ(requestsWithoutIdentifiers(), Lines{});
}

TEST_F(PortSwapFailureTest, ReportsAMissingMaster) {
    givenNoMaster();

    expectFailure(std::string(noMaster) + noMaster + noPorts);
}

TEST_F(PortSwapFailureTest, ReportsAMasterWhoseQueueIsFull) {
    givenFullMaster();

    expectFailure(std::string(noRoom) + noRoom + noPorts);
}

TEST_F(PortSwapFailureTest, ReportsAMasterThatNeverReads) {
    givenDeafMaster();

    expectFailure(noPorts);
}

TEST_F(PortSwapFailureTest, ReportsASilentMaster) {
    givenSilence();

    expectFailure(noPorts);
    EXPECT_EQ(requestsWithoutIdentifiers(2), (Lines{lookUp("eth0"), lookUp("eth1")}));
}

TEST_F(PortSwapFailureTest, ReportsAMasterThatExitsBeforeTheRenames) {
    givenMasterThatLeavesAfter(2);

    expectFailure(
        "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 2: No such file or directory\n"
        "PortSwap : rename send failed : (eth0,tmpN)\n"
        "PortSwap : swap failed : from eth0 to tmpN\n"
        "PortSwap : swap failed\n");
}

TEST_F(PortSwapFailureTest, ReportsAMasterThatExitsAfterTheRenames) {
    const std::string gone =
        "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 2: No such file or directory\n";
    givenMasterThatLeavesAfter(5);

    expectFailure(gone + gone + "PortSwap : swap failed: (1,1;-1,-1)\n");
}

TEST_F(PortSwapFailureTest, AddsNoLineIfTheClientSocketCannotBeBound) {
    givenNoClientSocket();

    expectFailure(std::string(noClientSocket) + noClientSocket + noPorts);

    const Printed renaming = printedBy([] { EXPECT_EQ(PortSwapAction::renameIntf("eth0", "tmpN"), -1); });
    EXPECT_EQ(renaming, Printed{.err = noClientSocket});
    EXPECT_EQ(requestsWithoutIdentifiers(), Lines{});
}
