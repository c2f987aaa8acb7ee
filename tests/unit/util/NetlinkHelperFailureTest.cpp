// System calls that fail during a receive, and a transport without a log.

#include <array>

#include "FailingCall.hpp"
#include "NetlinkHelperFixture.hpp"
#include "NetlinkWire.hpp"

using namespace std::chrono_literals;
using Util::NetlinkHelper;

namespace {

class NetlinkHelperFailureTest : public NetlinkHelperFixture {
protected:
    int receive(NetlinkHelper& from) {
        return from.receive(buffer.data(), static_cast<unsigned>(buffer.size()), 0ms, sequence);
    }

    /// The report of a receive while the kernel refuses `call`. A datagram is in the queue.
    Reports reportsUnder(const FailingCall& call) {
        EXPECT_TRUE(helper.open());
        arrives(netlinkMessage(7, ownPort(), "abc"));
        int result = 0;
        runFailing(call, [&] { result = receive(helper); });
        EXPECT_EQ(result, NetlinkHelper::failed);
        EXPECT_EQ(sequence, untouched);
        return reports();
    }

    std::array<char, 8> buffer{};
    unsigned sequence = untouched;
};

}  // namespace

TEST_F(NetlinkHelperFailureTest, ReportsAWaitThatFails) {
    EXPECT_EQ(reportsUnder({.number = pollCall, .error = ENOMEM}),
              reported("poll() error: Cannot allocate memory"));
}

TEST_F(NetlinkHelperFailureTest, TimesOutIfAnAnnouncedDatagramIsMissing) {
    ASSERT_TRUE(helper.open());
    arrives(netlinkMessage(7, ownPort(), "abc"));
    int result = 0;

    runFailing(nothingThere, [&] { result = receive(helper); });

    EXPECT_EQ(result, NetlinkHelper::timedOut);
    EXPECT_EQ(reports(), reported("Timed out while waiting for netlink msg"));
}

TEST_F(NetlinkHelperFailureTest, ReportsAFailedReceive) {
    EXPECT_EQ(reportsUnder({.number = receiveCall, .error = ENOBUFS}),
              reported("recv() error: No buffer space available"));
}

TEST_F(NetlinkHelperFailureTest, ReportsAReceiveOfNothingAsTheEndOfTheConnection) {
    constexpr int none = 0;  // the call then returns 0 and does nothing

    EXPECT_EQ(reportsUnder({.number = receiveCall, .error = none}),
              reported("Connection closed unexpectedly"));
}

TEST_F(NetlinkHelperFailureTest, ReportsAReceiveOnASocketThatIsNotOpen) {
    EXPECT_EQ(receive(helper), NetlinkHelper::failed);

    EXPECT_EQ(sequence, untouched);
    EXPECT_EQ(reports(), reported("poll() error: Bad file descriptor"));
}

TEST_F(NetlinkHelperFailureTest, KeepsWorkingWithoutALog) {
    NetlinkHelper mute(nullptr);

    EXPECT_TRUE(mute.open());
    EXPECT_TRUE(mute.send("abc", 3, ownPort(), 7));
    EXPECT_EQ(receive(mute), 3);
    EXPECT_EQ(sequence, 7);
    EXPECT_TRUE(mute.close());
}

TEST_F(NetlinkHelperFailureTest, FailsInTheSameWayWithoutALog) {
    NetlinkHelper mute(nullptr);
    runFailing(noNetlinkSocket, [&] { EXPECT_FALSE(mute.open()); });
    EXPECT_FALSE(mute.close());
    ASSERT_TRUE(mute.open());

    EXPECT_FALSE(mute.open());
    EXPECT_FALSE(mute.send("abc", 4097, ownPort(), 0));
    EXPECT_EQ(receive(mute), NetlinkHelper::timedOut);
    EXPECT_EQ(mute.receive(buffer.data(), 4097, 0ms, sequence), NetlinkHelper::failed);
    EXPECT_EQ(reports(), Reports{});
}
