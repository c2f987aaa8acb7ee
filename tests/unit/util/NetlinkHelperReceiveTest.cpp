// How the transport handles a received datagram.

#include <optional>

#include "NetlinkHelperFixture.hpp"
#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

using namespace std::chrono_literals;
using Util::NetlinkHelper;

namespace {

/// The result of a receive().
struct Received {
    int result = 0;
    std::string buffer = {};  ///< the bytes that were stored
    unsigned sequence = untouched;

    bool operator==(const Received&) const = default;
};

void PrintTo(const Received& received, std::ostream* stream) {
    *stream << received.result << ", \"" << received.buffer << "\", sequence " << received.sequence;
}

class NetlinkHelperReceiveTest : public NetlinkHelperFixture {
protected:
    void SetUp() override { ASSERT_TRUE(helper.open()); }

    /// Reads a datagram that has already arrived.
    Received receive(unsigned expected) {
        constexpr char blank = '\x5a';
        std::string buffer(5000, blank);
        Received received;
        received.result = helper.receive(buffer.data(), expected, 0ms, received.sequence);
        received.buffer = buffer.substr(0, buffer.find_last_not_of(blank) + 1);
        return received;
    }
};

std::string message(unsigned sequence, std::string_view payload) {
    return netlinkMessage(sequence, peerPort, payload);
}

const Received failure{.result = NetlinkHelper::failed};

}  // namespace

TEST_F(NetlinkHelperReceiveTest, ReturnsThePayloadAndItsSequenceNumber) {
    arrives(message(0x01020304, "abcdefgh"));

    EXPECT_EQ(receive(8), (Received{8, "abcdefgh", 0x01020304}));

    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkHelperReceiveTest, ReadsOneDatagramAtATime) {
    arrives(message(1, "first"));
    arrives(message(2, "second"));

    EXPECT_EQ(receive(100), (Received{5, "first", 1}));
    EXPECT_EQ(receive(100), (Received{6, "second", 2}));
}

TEST_F(NetlinkHelperReceiveTest, RefusesADatagramThatEndsInsideItsHeader) {
    for (const auto size : std::initializer_list<std::size_t>{1, 10, 15}) {
        SCOPED_TRACE(size);
        arrives(message(7, "").substr(0, size));

        EXPECT_EQ(receive(8), failure);

        EXPECT_EQ(reports(), reported("Packet received from netlink is too small"));
    }
}

TEST_F(NetlinkHelperReceiveTest, AcceptsADatagramThatEndsAfterItsHeader) {
    arrives(message(7, ""));

    EXPECT_EQ(receive(8), (Received{0, "", 7}));
}

TEST_F(NetlinkHelperReceiveTest, AcceptsAPayloadThatIsShorterThanExpected) {
    arrives(message(7, "a"));

    EXPECT_EQ(receive(8), (Received{1, "a", 7}));

    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkHelperReceiveTest, CutsALongerPayloadSilently) {
    for (const std::string surplus : {"i", "ijklmnop"}) {
        arrives(message(7, "abcdefgh" + surplus));

        EXPECT_EQ(receive(8), (Received{8, "abcdefgh", 7}));
    }
    EXPECT_EQ(receive(8).result, NetlinkHelper::timedOut);  // the rest is gone
    EXPECT_EQ(reports(), reported("Timed out while waiting for netlink msg"));
}

TEST_F(NetlinkHelperReceiveTest, ReturnsNothingIfNothingIsExpected) {
    arrives(message(7, "abc"));
    unsigned sequence = untouched;

    EXPECT_EQ(helper.receive(nullptr, 0, 0ms, sequence), 0);

    EXPECT_EQ(sequence, 7);
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkHelperReceiveTest, ExpectsUpTo4096Bytes) {
    const std::string payload(4096, 'p');
    arrives(message(1, payload));
    arrives(message(2, payload + "more"));

    EXPECT_EQ(receive(4096), (Received{4096, payload, 1}));
    EXPECT_EQ(receive(4096), (Received{4096, payload, 2}));
}

TEST_F(NetlinkHelperReceiveTest, RefusesToExpectMoreAndKeepsTheDatagram) {
    arrives(message(7, "abc"));

    EXPECT_EQ(receive(4097), failure);

    EXPECT_EQ(reports(), reported("Expected packet size too large: 4097, max: 4096"));
    EXPECT_EQ(receive(4096), (Received{3, "abc", 7}));
}

TEST_F(NetlinkHelperReceiveTest, RefusesAMissingBuffer) {
    arrives(message(7, "abc"));
    unsigned sequence = untouched;

    EXPECT_EQ(helper.receive(nullptr, 8, 0ms, sequence), NetlinkHelper::failed);

    EXPECT_EQ(sequence, untouched);
    EXPECT_EQ(reports(), reported("recv() error: Bad address"));
}

TEST_F(NetlinkHelperReceiveTest, IgnoresTheFieldsOfTheHeader) {
    const std::string wrongLength = littleEndian(0xffffffff);
    const std::string wrongTypeAndFlags = littleEndian(0x12345678);
    const std::string wrongPort = littleEndian(0);
    arrives(wrongLength + wrongTypeAndFlags + littleEndian(7) + wrongPort + "abc");

    EXPECT_EQ(receive(8), (Received{3, "abc", 7}));

    EXPECT_EQ(reports(), Reports{});
}
