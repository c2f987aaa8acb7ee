// "add_interface" without one of its requirements.

#include <csignal>
#include <filesystem>

#include "AddInterfaceFixture.hpp"
#include "ArgumentVector.hpp"
#include "FailingCall.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"
#include "SmLog.hpp"

namespace {

class AddInterfaceActionFailureTest : public AddInterfaceFixture {};

}  // namespace

TEST_F(AddInterfaceActionFailureTest, ReportsAMissingProxyOnlyInTheLog) {
    EXPECT_FALSE(add({"eth1"}));

    EXPECT_EQ(printed, failureOf("eth1"));
    EXPECT_EQ(reports(), Reports{"0 NetlinkHelper: Error while sending netling message: Connection refused"});
}

TEST_F(AddInterfaceActionFailureTest, ReportsAFailedSocketCallOnlyInTheLog) {
    ASSERT_NE(SmLog::getClientInstance(logName, 3), nullptr);  // has its descriptor from now on
    bool success = true;

    printed = printedBy([&] { runFailing(noNetlinkSocket, [&] { success = run({"eth1"}); }); });

    EXPECT_FALSE(success);
    EXPECT_EQ(printed, failureOf("eth1"));
    EXPECT_EQ(reports(),
              Reports{"0 NetlinkHelper: Error while creating netlink socket: Too many open files"});
}

TEST_F(AddInterfaceActionFailureTest, FailsInTheSameWayWithoutALog) {
    std::filesystem::create_directory(std::string("/dev/shm/") + logName);
    ASSERT_EQ(SmLog::getClientInstance(logName, 3), nullptr);

    EXPECT_FALSE(add({"eth1"}));

    EXPECT_EQ(printed, failureOf("eth1"));
}

TEST_F(AddInterfaceActionFailureTest, WorksWithoutALog) {
    std::filesystem::create_directory(std::string("/dev/shm/") + logName);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    proxy.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        reply(netlinkMessage(0, proxyPort, responsePayload(0)));
    });

    EXPECT_TRUE(add({"eth1"}));

    EXPECT_EQ(printed, successOf("eth1"));
}

TEST_F(AddInterfaceActionFailureTest, AbortsIfItIsRunUnderAnotherKeyword) {
    ArgumentVector vector({"getport", "eth1"});

    EXPECT_EXIT(action.run(vector.argc(), vector.argv()), testing::KilledBySignal(SIGABRT),
                "^AddInterfaceAction: Assertion \"argv\\[1\\] == keyword\" failed\\.\n$");
}
