// "mirrorport" with an unreachable NetFP master, and requests with edge values.

#include "MasterActionFixture.hpp"
#include "MirrorPortAction.hpp"
#include "NetfpMasterWire.hpp"
#include "VerboseMode.hpp"

using Korvel::MirrorPortAction;

namespace {

using Words = std::vector<std::string>;

class MirrorPortFailureTest : public MasterActionFixture {
protected:
    /// Runs the action, which ignores the results of its requests.
    void expectSuccess(const std::string& from, const std::string& to, const Printed& expected) {
        EXPECT_TRUE(run(action, {"mirrorport", "enable", from, to}));
        EXPECT_EQ(printed, expected);
    }

    void expectInvalidFrom(const std::string& reason) {
        EXPECT_FALSE(run(action, {"mirrorport", "enable", "eth0", "1"}));
        EXPECT_EQ(printed, Printed{.err = reason + "Port Mirroring: Invalid 'from' port number \n"});
    }

    /// A request to mirror port 1 inbound as requestsWithoutIdentifiers() returns it.
    static std::string inboundRequest(char to) {
        std::string bytes = masterRequest(setPortMirroring, 0, "");
        bytes[8] = 1;
        bytes[12] = 1;
        bytes[16] = 1;
        bytes[17] = to;
        return bytes;
    }

    MirrorPortAction action;
};

}  // namespace

TEST_F(MirrorPortFailureTest, SucceedsSilentlyIfTheMasterIsSilent) {
    givenSilence();

    expectSuccess("1", "2", {});
    EXPECT_EQ(requestsWithoutIdentifiers(1), Words{inboundRequest(2)});
}

TEST_F(MirrorPortFailureTest, SucceedsIfNoRequestCanBeSent) {
    givenNoMaster();
    expectSuccess("1", "2", {.err = noMaster});
}

TEST_F(MirrorPortFailureTest, SucceedsIfTheMastersQueueIsFull) {
    givenFullMaster();
    expectSuccess("1", "2", {.err = noRoom});
}

TEST_F(MirrorPortFailureTest, SucceedsIfTheClientSocketCannotBeBound) {
    givenNoClientSocket();
    expectSuccess("1", "2", {.err = noClientSocket});
}

TEST_F(MirrorPortFailureTest, ReportsNoSuccessInVerboseModeIfItDoesNotConnect) {
    givenNoClientSocket();
    Korvel::setVerboseMode(true);

    printed = printedBy([] { MirrorPortAction::executePortMirrorCommand(true, 1, 2); });

    EXPECT_EQ(printed, (Printed{.out = "Port Mirroring: \n"
                                       "Enabling port 1 ---> port 2\n"
                                       "Creating Socket for Client\n"
                                       "Binding to Client Socket \"/tmp/missing/Korvel\"\n",
                                .err = noClientSocket}));
}

TEST_F(MirrorPortFailureTest, HasNoPortIfNoRequestCanBeSent) {
    givenNoMaster();
    expectInvalidFrom(noMaster);
    givenNoClientSocket();
    expectInvalidFrom(noClientSocket);
}

TEST_F(MirrorPortFailureTest, HasNoPortIfTheMasterIsSilent) {
    givenDeafMaster();
    expectInvalidFrom("");
}

TEST_F(MirrorPortFailureTest, SendsTheLow8BitsOfAToPort) {
    givenMaster({}, [](std::size_t /*number*/) { return -4; });

    expectSuccess("1", "259", {.err = refused});
    expectSuccess("1", "2147483647", {.err = refused});

    EXPECT_EQ(requestsWithoutIdentifiers(), (Words{inboundRequest(3), inboundRequest('\xff')}));
}

TEST_F(MirrorPortFailureTest, AsksForTheFirst32CharactersOfAnInterface) {
    const std::string name(4096, 'i');
    givenMaster({{name.substr(0, 31), 1}, {name.substr(0, 32), 2}});

    EXPECT_EQ(MirrorPortAction::retrievePortNumber(name.substr(0, 31)), 1);
    EXPECT_EQ(MirrorPortAction::retrievePortNumber(name.substr(0, 32)), 2);
    EXPECT_EQ(MirrorPortAction::retrievePortNumber(name.substr(0, 33)), 2);
    EXPECT_EQ(MirrorPortAction::retrievePortNumber(name), 2);
}
