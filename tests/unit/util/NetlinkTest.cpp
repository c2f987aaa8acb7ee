// The transport for a peer with one form of request and one of response.

#include <cstring>

#include "FastPathNetlink.hpp"
#include "Netlink.hpp"
#include "NetlinkHelperFixture.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"
#include "WireNumber.hpp"

using namespace std::chrono_literals;

namespace {

constexpr unsigned proxyPort = 110;

class NetlinkTest : public NetlinkHelperFixture {
protected:
    void SetUp() override { ASSERT_TRUE(channel.open()); }

    /// Receives a response that has already arrived.
    bool receive() { return channel.receive(response, 0ms, sequence); }

    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    Util::Netlink<NetfpProxy_AddInterfaceReq, NetfpProxy_AddInterfaceResp> channel{proxyPort, log};
    NetfpProxy_AddInterfaceResp response{};
    unsigned sequence = untouched;
};

std::string responseOf(std::string_view payload) {
    return netlinkMessage(7, proxyPort, payload);
}

}  // namespace

TEST_F(NetlinkTest, SendsTheRequestsBytesToItsPeer) {
    NetfpProxy_AddInterfaceReq request{.messageType = 23, .interfaceName = {}};
    std::memcpy(request.interfaceName, "eth1", 4);

    EXPECT_TRUE(channel.send(request, 9));

    const std::string payload = littleEndian(23) + "eth1" + std::string(28, '\0');
    EXPECT_EQ(proxy.awaitRequests(1), std::vector{netlinkMessage(9, ownPort(), payload)});
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkTest, ReportsARequestThatCannotBeSentOnce) {
    Util::Netlink<NetfpProxy_AddInterfaceReq, NetfpProxy_AddInterfaceResp> toNobody(120, log);
    ASSERT_TRUE(channel.close());
    ASSERT_TRUE(toNobody.open());

    EXPECT_FALSE(toNobody.send({}, 0));

    EXPECT_EQ(reports(), reported("Error while sending netling message: Connection refused"));
}

TEST_F(NetlinkTest, ReceivesAResponseOfItsSizeAndTheSequenceNumber) {
    arrives(responseOf(statusPayload(24, 5)));

    EXPECT_TRUE(receive());

    EXPECT_EQ(response.messageType, 24);
    EXPECT_EQ(response.status, 5);
    EXPECT_EQ(sequence, 7);
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkTest, ReceivesAResponseAndDropsTheSequenceNumber) {
    proxy.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        reply(responseOf(statusPayload(24, 5)));
    });
    ASSERT_TRUE(channel.send({}, 0));

    EXPECT_TRUE(channel.receive(response, longerThanAnyTest));

    EXPECT_EQ(response.messageType, 24);
    EXPECT_EQ(response.status, 5);
}

TEST_F(NetlinkTest, ReportsAResponseThatIsTooShort) {
    const std::string payload = statusPayload(24, 0);
    for (const auto size : std::initializer_list<std::size_t>{0, 4, 7}) {
        arrives(responseOf(payload.substr(0, size)));

        EXPECT_FALSE(receive());

        EXPECT_EQ(reports(),
                  reported("Wrong received message size: " + std::to_string(size) + ", expected: 8"));
    }
}

TEST_F(NetlinkTest, ReadsTheFirst8BytesOfALongerResponse) {
    arrives(responseOf(statusPayload(24, 5) + "x"));

    EXPECT_TRUE(receive());

    EXPECT_EQ(response.messageType, 24);
    EXPECT_EQ(response.status, 5);
    EXPECT_EQ(reports(), Reports{});
}

TEST_F(NetlinkTest, ReportsSilenceOnce) {
    EXPECT_FALSE(receive());
    EXPECT_FALSE(channel.receive(response, 0ms));

    const std::string report = reported("Timed out while waiting for netlink msg").front();
    EXPECT_EQ(reports(), (Reports{report, report}));
    EXPECT_EQ(sequence, untouched);
}

TEST_F(NetlinkTest, ReportsADatagramThatEndsInsideItsHeaderOnce) {
    arrives(responseOf("").substr(0, 10));

    EXPECT_FALSE(receive());

    EXPECT_EQ(reports(), reported("Packet received from netlink is too small"));
    EXPECT_EQ(sequence, untouched);
}
