// "portswap" with a failing rename. It reverts the earlier renames.

#include "NetFPMasterCom.hpp"
#include "PortSwapFixture.hpp"

namespace {

constexpr unsigned enoughForAnAnswer = 20;  // in units of 100 ms

class PortSwapRollBackTest : public PortSwapFixture {
protected:
    /// The requests before the renames, then these.
    static Lines behindTheLookUps(const Lines& renames) {
        Lines requests{lookUp("eth0"), lookUp("eth1")};
        requests.insert(requests.end(), renames.begin(), renames.end());
        return requests;
    }
};

}  // namespace

TEST_F(PortSwapRollBackTest, RevertsNothingIfTheFirstRenameFails) {
    givenRenamingMaster({{1, Rename::refused}});

    expectFailure(
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (eth0,tmpN)\n"
        "PortSwap : swap failed : from eth0 to tmpN\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(), behindTheLookUps({rename("eth0", "tmpN")}));
}

TEST_F(PortSwapRollBackTest, RevertsTheFirstRenameIfTheSecondFails) {
    givenRenamingMaster({{2, Rename::refused}});

    expectFailure(
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (eth1,eth0)\n"
        "PortSwap : swap failed : from  eth1 to eth0\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(),
              behindTheLookUps({rename("eth0", "tmpN"), rename("eth1", "eth0"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapRollBackTest, RevertsTheSecondAndThenTheFirstRenameIfTheThirdFails) {
    givenRenamingMaster({{3, Rename::refused}});

    expectFailure(
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (tmpN,eth1)\n"
        "PortSwap : swap failed from tmpN to eth1\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(),
              behindTheLookUps({rename("eth0", "tmpN"), rename("eth1", "eth0"), rename("tmpN", "eth1"),
                                rename("eth0", "eth1"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapRollBackTest, LeavesTheInterfacesAsTheyWere) {
    for (const int failing : {1, 2, 3}) {
        givenRenamingMaster({{failing, Rename::refused}});

        EXPECT_FALSE(swap({"eth0", "eth1"}));

        EXPECT_EQ(Korvel::PortSwapAction::getIntfPort("eth0"), 1) << failing;
        EXPECT_EQ(Korvel::PortSwapAction::getIntfPort("eth1"), 2) << failing;
    }
}

TEST_F(PortSwapRollBackTest, TriesOnceToRevertTheFirstRename) {
    givenRenamingMaster({{2, Rename::refused}, {3, Rename::refused}});

    expectFailure(
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (eth1,eth0)\n"
        "PortSwap : swap failed : from  eth1 to eth0\n"
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (tmpN,eth0)\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(),
              behindTheLookUps({rename("eth0", "tmpN"), rename("eth1", "eth0"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapRollBackTest, TriesOnceToRevertEachOfTwoRenames) {
    givenRenamingMaster({{3, Rename::refused}, {4, Rename::refused}, {5, Rename::refused}});

    expectFailure(
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (tmpN,eth1)\n"
        "PortSwap : swap failed from tmpN to eth1\n"
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (eth0,eth1)\n"
        "Response from Server was not successful.\n"
        "PortSwap : rename recv failed : (tmpN,eth0)\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(),
              behindTheLookUps({rename("eth0", "tmpN"), rename("eth1", "eth0"), rename("tmpN", "eth1"),
                                rename("eth0", "eth1"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapRollBackTest, RevertsRenamesThatTheMasterDoesNotAnswer) {
    Korvel::NetFPMasterCom::setTimeout(enoughForAnAnswer);
    givenRenamingMaster({{2, Rename::unanswered}});

    expectFailure(
        "PortSwap : rename recv failed : (eth1,eth0)\n"
        "PortSwap : swap failed : from  eth1 to eth0\n"
        "PortSwap : swap failed\n");

    EXPECT_EQ(requestsWithoutIdentifiers(),
              behindTheLookUps({rename("eth0", "tmpN"), rename("eth1", "eth0"), rename("tmpN", "eth0")}));
}

TEST_F(PortSwapRollBackTest, ReportsEachRenameThatCannotBeSent) {
    const std::string gone =
        "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 2: No such file or directory\n";
    givenMasterThatLeavesAfter(3);

    expectFailure(gone +
                  "PortSwap : rename send failed : (eth1,eth0)\n"
                  "PortSwap : swap failed : from  eth1 to eth0\n" +
                  gone +
                  "PortSwap : rename send failed : (tmpN,eth0)\n"
                  "PortSwap : swap failed\n");
}
