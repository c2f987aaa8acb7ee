// The transport's wait for a datagram: the events that end it, and those that do not.

#include <array>
#include <chrono>
#include <thread>

#include "NetlinkHelperFixture.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"
#include "SignalStorm.hpp"

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Util::NetlinkHelper;

namespace {

class NetlinkHelperWaitTest : public NetlinkHelperFixture {
protected:
    void SetUp() override { ASSERT_TRUE(helper.open()); }

    int receive(milliseconds timeout) {
        return helper.receive(buffer.data(), static_cast<unsigned>(buffer.size()), timeout, sequence);
    }

    void expectTimedOut() {
        EXPECT_EQ(sequence, untouched);
        EXPECT_EQ(reports(), reported("Timed out while waiting for netlink msg"));
    }

    ScriptedPeer peer = ScriptedPeer::atNetlinkPort(peerPort);
    std::array<char, 8> buffer{};
    unsigned sequence = untouched;
};

const std::string response = netlinkMessage(7, peerPort, "abc");

}  // namespace

TEST_F(NetlinkHelperWaitTest, LastsItsWholeTimeIfNothingArrives) {
    const auto begin = steady_clock::now();

    EXPECT_EQ(receive(200ms), NetlinkHelper::timedOut);

    EXPECT_GE(steady_clock::now() - begin, 200ms);
    expectTimedOut();
}

TEST_F(NetlinkHelperWaitTest, EndsWhenADatagramArrives) {
    peer.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        std::this_thread::sleep_for(100ms);
        reply(response);
    });
    for (const milliseconds timeout : {milliseconds(longerThanAnyTest), milliseconds::max()}) {
        ASSERT_TRUE(send("question", peerPort));

        EXPECT_EQ(receive(timeout), 3);

        EXPECT_EQ(sequence, 7);
        EXPECT_EQ(reports(), Reports{});
    }
}

TEST_F(NetlinkHelperWaitTest, ReturnsImmediatelyIfItsTimeIsZeroOrLess) {
    for (const milliseconds timeout : {0ms, -1ms, -5000ms, milliseconds::min()}) {
        SCOPED_TRACE(timeout.count());
        EXPECT_EQ(receive(timeout), NetlinkHelper::timedOut);
        expectTimedOut();

        arrives(response);
        EXPECT_EQ(receive(timeout), 3);
        EXPECT_EQ(reports(), Reports{});
        sequence = untouched;
    }
}

TEST_F(NetlinkHelperWaitTest, CanBeRepeatedAfterATimeOut) {
    ASSERT_EQ(receive(1ms), NetlinkHelper::timedOut);
    reports();
    arrives(response);

    EXPECT_EQ(receive(longerThanAnyTest), 3);

    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkHelperWaitTest, LastsItsWholeTimeDespiteSignals) {
    const auto begin = steady_clock::now();
    const SignalStorm storm;

    EXPECT_EQ(receive(300ms), NetlinkHelper::timedOut);

    EXPECT_GE(steady_clock::now() - begin, 300ms);
    EXPECT_GT(SignalStorm::count(), 0);
    expectTimedOut();
}

TEST_F(NetlinkHelperWaitTest, ContinuesAfterSignals) {
    peer.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        while (SignalStorm::count() < manySignals) {
            std::this_thread::sleep_for(1ms);
        }
        reply(response);
    });
    const SignalStorm storm;
    ASSERT_TRUE(send("question", peerPort));

    EXPECT_EQ(receive(longerThanAnyTest), 3);

    EXPECT_EQ(reports(), Reports{});
}
