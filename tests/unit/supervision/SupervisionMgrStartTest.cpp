// The start of the supervision, and its end before the first cycle.

#include <system_error>

#include <sys/socket.h>
#include <unistd.h>

#include "FailingCall.hpp"
#include "ScriptedPeer.hpp"
#include "SupervisionMgrFixture.hpp"

using Korvel::HeartbeatRespStatus;

namespace {

class SupervisionMgrStartTest : public SupervisionMgrFixture {
protected:
    /// Runs the supervision while one of its system calls fails.
    bool runWith(const FailingCall& failing) {
        bool success = true;
        runFailing(failing, [&] { success = run(); });
        return success;
    }

    /// A server at the port of the supervision's own socket. Throws if the supervision has that port.
    static ScriptedPeer atOwnPort() {
        return ScriptedPeer::atNetlinkPort(static_cast<std::uint32_t>(::getpid()));
    }

    /// The status line with a different status for each peer.
    std::string statusLine() const {
        HeartbeatRespStatus status;
        status.iwf = HeartbeatRespStatus::OK;
        status.sfn = HeartbeatRespStatus::ERROR;
        return manager.getStatusStr(status);
    }

    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};

}  // namespace

TEST_F(SupervisionMgrStartTest, EndsSilentlyIfNoDispatcherIsSelected) {
    EXPECT_FALSE(run());

    EXPECT_EQ(printed, Printed{});
    expectLogged({});
    EXPECT_EQ(proxy.requests(), std::vector<std::string>{});
}

TEST_F(SupervisionMgrStartTest, ReleasesItsPortIfNoDispatcherIsSelected) {
    run();

    EXPECT_NO_THROW(atOwnPort());
}

TEST_F(SupervisionMgrStartTest, UsesItsProcessIdAsPortId) {
    select({iwf});

    EXPECT_TRUE(manager.initialize());

    EXPECT_THROW(atOwnPort(), std::system_error);
    expectLogged({});
}

TEST_F(SupervisionMgrStartTest, ReleasesItsPortAtTheEnd) {
    select({iwf});
    ASSERT_TRUE(manager.initialize());

    manager.cleanup();

    EXPECT_NO_THROW(atOwnPort());
    expectLogged({});
}

TEST_F(SupervisionMgrStartTest, HasNothingToCleanUpWithoutASocket) {
    EXPECT_EQ(printedBy([&] { manager.cleanup(); }), Printed{});

    expectLogged({});
}

TEST_F(SupervisionMgrStartTest, ReportsASocketThatCannotBeClosed) {
    select({iwf});
    ASSERT_TRUE(manager.initialize());

    runFailing({.number = SYS_close, .error = EIO}, [&] { manager.cleanup(); });

    expectLogged({error("Error while closing netlink socket, errno: Input/output error")});
}

TEST_F(SupervisionMgrStartTest, ReportsAFailedSocketCall) {
    select({iwf, sfn});

    EXPECT_FALSE(runWith(noNetlinkSocket));

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Error while creating netlink socket, errno: Too many open files")});
    EXPECT_EQ(proxy.requests(), std::vector<std::string>{});
}

TEST_F(SupervisionMgrStartTest, UsesASocketWithoutASendTimeOut) {
    select({iwf, sfn});
    bool initialized = false;

    runFailing({.number = SYS_setsockopt, .error = ENOBUFS}, [&] { initialized = manager.initialize(); });

    EXPECT_TRUE(initialized);
    expectLogged({});
}

TEST_F(SupervisionMgrStartTest, ReportsAPortIdThatIsTaken) {
    const ScriptedPeer other = atOwnPort();
    select({iwf, sfn});

    EXPECT_FALSE(run());

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Error while binding netlink socket, errno: Address already in use")});
    EXPECT_EQ(proxy.requests(), std::vector<std::string>{});
}

TEST_F(SupervisionMgrStartTest, ReportsAFailureEvenIfNoDispatcherIsSelected) {
    EXPECT_FALSE(runWith(noNetlinkSocket));

    expectLogged({error("Error while creating netlink socket, errno: Too many open files")});
}

TEST_F(SupervisionMgrStartTest, ShowsOnlyNetfpProxyBeforeItKnowsTheSelection) {
    select({iwf, sfn});

    EXPECT_EQ(statusLine(), "Heartbeat status: NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrStartTest, ShowsOnlyTheIwfDispatcherIfOnlyItIsSelected) {
    select({iwf});
    ASSERT_TRUE(manager.initialize());

    EXPECT_EQ(statusLine(), "Heartbeat status: IWF Dispatcher:OK NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrStartTest, ShowsOnlyTheSfnDispatcherIfOnlyItIsSelected) {
    select({sfn});
    ASSERT_TRUE(manager.initialize());

    EXPECT_EQ(statusLine(), "Heartbeat status: SFN Dispatcher:ERROR NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrStartTest, ShowsBothDispatchersIfBothAreSelected) {
    select({sfn, iwf});
    ASSERT_TRUE(manager.initialize());

    EXPECT_EQ(statusLine(),
              "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrStartTest, ShowsNothingForAStatusWithoutAName) {
    select({iwf});
    ASSERT_TRUE(manager.initialize());
    HeartbeatRespStatus status;
    status.iwf = HeartbeatRespStatus::Status{3};
    status.netfpProxy = HeartbeatRespStatus::Status{4};

    EXPECT_EQ(manager.getStatusStr(status), "Heartbeat status: IWF Dispatcher: NetfpProxy: ");
}
