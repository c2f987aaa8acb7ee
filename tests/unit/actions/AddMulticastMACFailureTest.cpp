// "addmulticastmac" with a NetFP master that is unreachable or refuses.

#include "AddMulticastMACFixture.hpp"

namespace {

class AddMulticastMACFailureTest : public AddMulticastMACFixture {
protected:
    const Words arguments{"1:0:5e:0:0:1", "eth0", "65537"};
    const std::string sendFailed =
        "AddMulticastMAC send failed : (MAC: 1:0:5e:0:0:1, interface: eth0, vlanID: 1)\n"
        "AddMulticastMAC failed\n";
    const std::string receiveFailed =
        "AddMulticastMAC recv failed : (MAC: 1:0:5e:0:0:1, interface: eth0, vlanID: 1)\n"
        "AddMulticastMAC failed\n";
    const Words theRequest{request({.vlan = 1, .ignoresVlan = 0})};
};

}  // namespace

TEST_F(AddMulticastMACFailureTest, ReportsAMasterThatRefuses) {
    for (const int errorCode : {-6, -1, 1}) {
        givenMasterResponds(errorCode);

        expectFailure(arguments, refused + receiveFailed);
    }
}

TEST_F(AddMulticastMACFailureTest, ReportsASilentMasterAndDoesNotRetry) {
    givenSilence();

    expectFailure(arguments, receiveFailed);
    EXPECT_EQ(requestsWithoutIdentifiers(1), theRequest);
}

TEST_F(AddMulticastMACFailureTest, ReportsAMasterThatNeverReads) {
    givenDeafMaster();

    expectFailure(arguments, receiveFailed);
}

TEST_F(AddMulticastMACFailureTest, ReportsAMasterWhoseQueueIsFull) {
    givenFullMaster();

    expectFailure(arguments, noRoom + sendFailed);
}

TEST_F(AddMulticastMACFailureTest, ReportsAMissingMaster) {
    givenNoMaster();

    expectFailure(arguments, noMaster + sendFailed);
}

TEST_F(AddMulticastMACFailureTest, NamesVlan0IfNoneWasGiven) {
    givenNoMaster();

    expectFailure({"01:00:5e:00:00:01", ""},
                  std::string(noMaster) +
                      "AddMulticastMAC send failed : (MAC: 01:00:5e:00:00:01, interface: , vlanID: 0)\n"
                      "AddMulticastMAC failed\n");
}

TEST_F(AddMulticastMACFailureTest, AddsOneLineIfTheClientSocketCannotBeBound) {
    givenNoClientSocket();

    expectFailure(arguments, std::string(noClientSocket) + "AddMulticastMAC failed\n");
    EXPECT_EQ(requestsWithoutIdentifiers(), Words{});
}
