// The datagrams that the transport sends, and peers that cannot receive them.

#include <array>
#include <chrono>
#include <limits>

#include "FailingCall.hpp"
#include "NetlinkHelperFixture.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"
#include "WireNumber.hpp"

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class NetlinkHelperSendTest : public NetlinkHelperFixture {
protected:
    void SetUp() override { ASSERT_TRUE(helper.open()); }

    /// The datagram that the peer must receive.
    static std::string message(std::string_view payload, unsigned sequence = 0) {
        return netlinkMessage(sequence, ownPort(), payload);
    }

    ScriptedPeer peer = ScriptedPeer::atNetlinkPort(peerPort);
};

}  // namespace

TEST_F(NetlinkHelperSendTest, PutsAHeaderBeforeThePayload) {
    EXPECT_TRUE(send("abc", peerPort, 0x01020304));

    constexpr std::string_view lengthTypeFlagsAndSequence("\x13\0\0\0\1\0\0\0\4\3\2\1", 12);
    EXPECT_EQ(peer.awaitRequests(1),
              std::vector{std::string(lengthTypeFlagsAndSequence) + littleEndian(ownPort()) + "abc"});
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkHelperSendTest, AddsNoPaddingForAnyPayloadLength) {
    std::vector<std::string> expected;
    for (const auto length : std::initializer_list<std::size_t>{1, 2, 3, 4, 5, 36, 4095}) {
        const std::string payload(length, 'p');

        EXPECT_TRUE(send(payload, peerPort));

        expected.push_back(message(payload));
    }
    EXPECT_EQ(peer.awaitRequests(expected.size()), expected);
}

TEST_F(NetlinkHelperSendTest, KeepsNoBytesOfAnEarlierLongerMessage) {
    EXPECT_TRUE(send(std::string(100, '\xff'), peerPort, 0xffffffff));
    EXPECT_TRUE(send("x", peerPort, 0));

    EXPECT_EQ(peer.awaitRequests(2).back(), message("x"));
}

TEST_F(NetlinkHelperSendTest, SendsOnlyAHeaderForAnEmptyPayload) {
    EXPECT_TRUE(helper.send(nullptr, 0, peerPort, 5));

    EXPECT_EQ(peer.awaitRequests(1), std::vector{message("", 5)});
}

TEST_F(NetlinkHelperSendTest, SendsPayloadsOfUpTo4096Bytes) {
    const std::string payload(4096, 'p');

    EXPECT_TRUE(send(payload, peerPort));

    const std::string received = peer.awaitRequests(1).front();
    EXPECT_EQ(received.size(), 4112);
    EXPECT_EQ(received, message(payload));
}

TEST_F(NetlinkHelperSendTest, RefusesALongerPayload) {
    EXPECT_FALSE(send(std::string(4097, 'p'), peerPort));
    EXPECT_EQ(reports(), reported("Payload size too large: 4097, max: 4096"));

    EXPECT_FALSE(helper.send("x", std::numeric_limits<unsigned>::max(), peerPort, 0));
    EXPECT_EQ(reports(), reported("Payload size too large: 4294967295, max: 4096"));

    EXPECT_TRUE(send("next", peerPort));
    EXPECT_EQ(peer.awaitRequests(1), std::vector{message("next")});
}

TEST_F(NetlinkHelperSendTest, RefusesAMissingPayload) {
    EXPECT_FALSE(helper.send(nullptr, 4, peerPort, 0));

    EXPECT_EQ(reports(), reported("Error while sending netling message: Bad address"));
}

TEST_F(NetlinkHelperSendTest, NeedsAnOpenSocket) {
    ASSERT_TRUE(helper.close());

    EXPECT_FALSE(send("abc", peerPort));

    EXPECT_EQ(reports(), reported("Error while sending netling message: Bad file descriptor"));
}

TEST_F(NetlinkHelperSendTest, ReportsThatNobodyIsAtThePortId) {
    constexpr unsigned nobody = 120;

    EXPECT_FALSE(send("abc", nobody));

    EXPECT_EQ(reports(), reported("Error while sending netling message: Connection refused"));
}

TEST_F(NetlinkHelperSendTest, GivesUpOnAPeerThatNeverReadsAfterASecond) {
    constexpr unsigned deafPort = 120;
    constexpr auto aboutASecond = 950ms;  // minus the error of a coarse clock
    const Base::UniqueFd deaf = socketAt(deafPort);
    const std::string payload(4096, 'p');

    auto begin = steady_clock::now();
    while (send(payload, deafPort)) {
        begin = steady_clock::now();
    }

    EXPECT_GE(steady_clock::now() - begin, aboutASecond);
    EXPECT_EQ(reports(), reported("Error while sending netling message: Resource temporarily unavailable"));
}

TEST_F(NetlinkHelperSendTest, ReportsAFailedSend) {
    bool sent = true;

    runFailing({.number = SYS_sendto, .error = ENOBUFS}, [&] { sent = send("abc", peerPort); });

    EXPECT_FALSE(sent);
    EXPECT_EQ(reports(), reported("Error while sending netling message: No buffer space available"));
}
