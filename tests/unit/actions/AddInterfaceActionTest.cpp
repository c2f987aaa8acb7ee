// "add_interface": the request to netfp_proxy, and the handling of its answer.

#include <chrono>

#include "AddInterfaceFixture.hpp"
#include "KorvelHelp.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class AddInterfaceActionTest : public AddInterfaceFixture {
protected:
    void givenProxyResponds(const std::string& payload) {
        proxy.answers([payload](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
            reply(netlinkMessage(0, proxyPort, payload));
        });
    }

    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};

}  // namespace

TEST_F(AddInterfaceActionTest, MakesTheProxyManageTheInterface) {
    givenProxyResponds(responsePayload(0));

    EXPECT_TRUE(add({"eth1"}));

    EXPECT_EQ(printed, successOf("eth1"));
    const std::string request = proxy.awaitRequests(1).front();
    EXPECT_EQ(request.size(), 52);
    EXPECT_EQ(request, requestFor("eth1"));
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(AddInterfaceActionTest, NeedsExactlyOneName) {
    for (const std::vector<std::string>& names :
         {std::vector<std::string>{}, {"eth1", "eth2"}, {"eth1", "eth2", "eth3"}}) {
        EXPECT_FALSE(add(names));
        EXPECT_EQ(printed, (Printed{.out = "Exactly one argument (interface name) required\n"}));
    }
    EXPECT_EQ(proxy.requests(), std::vector<std::string>{});
}

TEST_F(AddInterfaceActionTest, RefusesANameThatIsEmptyOrDoesNotFit) {
    for (const std::string& name : {std::string(), std::string(32, 'n'), std::string(4096, 'n')}) {
        SCOPED_TRACE(name.size());
        EXPECT_FALSE(add({name}));
        EXPECT_EQ(printed, (Printed{.out = "Invalid interface name\n"}));
    }
    EXPECT_EQ(proxy.requests(), std::vector<std::string>{});
}

TEST_F(AddInterfaceActionTest, AcceptsANameOf31Characters) {
    givenProxyResponds(responsePayload(0));
    const std::string name(31, 'n');

    EXPECT_TRUE(add({name}));

    EXPECT_EQ(printed, successOf(name));
    EXPECT_EQ(proxy.awaitRequests(1), std::vector{requestFor(name)});
}

TEST_F(AddInterfaceActionTest, PrintsTheStatusThatTheProxyRefusesWith) {
    for (const std::uint32_t status : {5U, 1U, 4294967295U}) {
        givenProxyResponds(responsePayload(status));

        EXPECT_FALSE(add({"eth1"}));
        EXPECT_EQ(
            printed,
            failureOf("eth1", "Operation unsuccessful, status reported: " + std::to_string(status) + "\n"));
    }
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(AddInterfaceActionTest, RefusesAResponseOfAnotherTypeWithAnyStatus) {
    for (const std::uint32_t type : {0U, 23U, 25U, 4294967295U}) {
        givenProxyResponds(statusPayload(type, 5));

        EXPECT_FALSE(add({"eth1"}));
        EXPECT_EQ(printed, failureOf("eth1", "Netlink communication error, wrong message type: " +
                                                 std::to_string(type) + "\n"));
    }
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(AddInterfaceActionTest, ReportsAShortResponseOnlyInTheLog) {
    Reports expected;
    for (const auto size : std::initializer_list<std::size_t>{0, 4, 7}) {
        givenProxyResponds(responsePayload(0).substr(0, size));

        EXPECT_FALSE(add({"eth1"}));

        EXPECT_EQ(printed, failureOf("eth1"));
        expected.push_back("0 NetlinkHelper: Wrong received message size: " + std::to_string(size) +
                           ", expected: 8");
    }
    EXPECT_EQ(reports(), expected);
}

TEST_F(AddInterfaceActionTest, ReadsTheFirst8BytesOfALongerResponse) {
    givenProxyResponds(responsePayload(0) + '\1');

    EXPECT_TRUE(add({"eth1"}));

    EXPECT_EQ(printed, successOf("eth1"));
}

TEST_F(AddInterfaceActionTest, WaitsTwoSecondsForASilentProxy) {
    const auto begin = steady_clock::now();

    EXPECT_FALSE(add({"eth1"}));

    EXPECT_GE(steady_clock::now() - begin, 2s);
    EXPECT_EQ(printed, failureOf("eth1"));
    EXPECT_EQ(reports(), Reports{"0 NetlinkHelper: Timed out while waiting for netlink msg"});
}

TEST_F(AddInterfaceActionTest, CanBeRunAgainAfterAFailure) {
    givenProxyResponds(responsePayload(5));
    ASSERT_FALSE(add({"eth1"}));
    givenProxyResponds(responsePayload(0));

    EXPECT_TRUE(add({"eth2"}));

    EXPECT_EQ(printed, successOf("eth2"));
    EXPECT_EQ(proxy.requests(), (std::vector{requestFor("eth1"), requestFor("eth2")}));
}

TEST_F(AddInterfaceActionTest, PrintsItsHelpWithoutALineEnd) {
    EXPECT_EQ(action.getKeyword(), "add_interface");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("add_interface", "<>", "/bin/k")}));
}
