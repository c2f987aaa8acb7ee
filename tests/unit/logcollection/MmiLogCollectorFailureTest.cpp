// System calls that fail during the queries to the MMI services.

#include <sys/socket.h>

#include "Configuration.hpp"
#include "FailingCall.hpp"
#include "HeaderLine.hpp"
#include "MmiLogCollectorFixture.hpp"

namespace Configuration = Korvel::Configuration;

namespace {

class MmiLogCollectorFailureTest : public MmiLogCollectorFixture {
protected:
    MmiLogCollectorFailureTest() {
        selectIwf();
        selectSfn();
        repeatsCommands(iwf);
        repeatsCommands(sfn);
    }

    Printed collectFailing(const FailingCall& call, unsigned mask) {
        create(mask);
        Printed printed;
        runFailing(call, [&] { printed = collect(); });
        return printed;
    }

    /// Neither instance received a request, and the collection reports a failure.
    void expectGivenUp() const {
        EXPECT_FALSE(succeeded);
        EXPECT_EQ(iwf.requests(), Datagrams{});
        EXPECT_EQ(sfn.requests(), Datagrams{});
    }
};

}  // namespace

TEST_F(MmiLogCollectorFailureTest, GivesUpWithoutASocket) {
    EXPECT_EQ(collectFailing({.number = SYS_socket, .error = EMFILE}, everything),
              (Printed{.err = "Error while opening socket, errno: Too many open files\n"}));

    expectGivenUp();
}

TEST_F(MmiLogCollectorFailureTest, GivesUpIfTheAddressIsInvalid) {
    std::string& address = Configuration::getConfig(Configuration::IWF).dispatcherAddress;
    address = "localhost";

    EXPECT_EQ(collect(everything), (Printed{.err = "inet_pton error for address: localhost\n"}));

    address = "127.0.0.1";
    expectGivenUp();
}

TEST_F(MmiLogCollectorFailureTest, GivesUpIfTheLocalPortCannotBeShared) {
    EXPECT_EQ(collectFailing({.number = SYS_setsockopt, .error = ENOBUFS}, everything),
              (Printed{.err = "setsockopt SO_REUSEADDR error: No buffer space available\n"}));

    expectGivenUp();
}

TEST_F(MmiLogCollectorFailureTest, GivesUpIfTheLocalPortIsTaken) {
    const ScriptedPeer squatter = ScriptedPeer::atLocalPort(7778);

    EXPECT_EQ(collect(everything),
              (Printed{.err = "Error while binding socket, errno: Address already in use\n"}));

    expectGivenUp();
}

TEST_F(MmiLogCollectorFailureTest, KeepsTheRepliesOfEarlierInstancesIfALaterOneFails) {
    const ScriptedPeer squatter = ScriptedPeer::atLocalPort(8778);

    EXPECT_EQ(collect(information),
              (Printed{.err = "Error while binding socket, errno: Address already in use\n"}));

    EXPECT_FALSE(succeeded);
    EXPECT_EQ(show(), (Printed{.out = headerLine("iwf Socket Service Info") + "SocketSvcInfo\n"}));
}

TEST_F(MmiLogCollectorFailureTest, SkipsACommandThatCannotBeSent) {
    const FailingCall call{.number = SYS_sendto, .error = EPERM};

    EXPECT_EQ(
        collectFailing(call, statistics),
        (Printed{.err =
                     "Sending command SocketSvcCounters to MmiSvc failed, errno: Operation not permitted\n"
                     "Sending command ReassemblyCounters to MmiSvc failed, errno: Operation not permitted\n"
                     "Sending command HeapStats to MmiSvc failed, errno: Operation not permitted\n"
                     "Sending command SocketSvcCounters to MmiSvc failed, errno: Operation not permitted\n"
                     "Sending command ReassemblyCounters to MmiSvc failed, errno: Operation not permitted\n"
                     "Sending command HeapStats to MmiSvc failed, errno: Operation not permitted\n"}));

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), Printed{});
}

TEST_F(MmiLogCollectorFailureTest, EndsAReplyIfWaitingForItFails) {
    EXPECT_EQ(collectFailing({.number = pollCall, .error = ENOMEM}, information),
              (Printed{.err = "poll(): An error occured, errno: Cannot allocate memory\n"
                              "poll(): An error occured, errno: Cannot allocate memory\n"}));

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), Printed{});
}

TEST_F(MmiLogCollectorFailureTest, EndsAReplyIfReceivingItFails) {
    EXPECT_EQ(collectFailing({.number = receiveCall, .error = ENOMEM}, information),
              (Printed{.err = "recv(): An error occured, errno: Cannot allocate memory\n"
                              "recv(): An error occured, errno: Cannot allocate memory\n"}));

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), Printed{});
}

TEST_F(MmiLogCollectorFailureTest, ReportsASocketThatCannotBeClosedAndCountsTheInstanceAsDone) {
    EXPECT_EQ(collectFailing({.number = SYS_close, .error = EIO}, information),
              (Printed{.err = "Error while closing socket, errno: Input/output error\n"
                              "Error while closing socket, errno: Input/output error\n"}));

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), (Printed{.out = headerLine("iwf Socket Service Info") + "SocketSvcInfo\n" +
                                      headerLine("sfn Socket Service Info") + "SocketSvcInfo\n"}));
}
