// The requests of a client of the NetFP master, and its handling of the responses.

#include "NetFPMasterComFixture.hpp"
#include "NetfpMasterWire.hpp"
#include "VerboseMode.hpp"
#include "WireNumber.hpp"

using Korvel::NetFPMasterCom;

namespace {

class NetFPMasterComRequestTest : public NetFPMasterComFixture {
protected:
    bool mirror(bool enable, std::uint32_t direction, int fromPort, int toPort) {
        bool done = false;
        printed = printedBy([&] {
            done = client.setPortMirroring(enable, static_cast<Netfp_Direction>(direction), fromPort, toPort);
        });
        return done;
    }

    /// Sends a request of the caller. `callback` checks the response.
    bool exchange(NetfpMaster_Request& request, NetFPMasterCom::ResponseCallback callback) {
        bool accepted = false;
        printed = printedBy(
            [&] { accepted = client.sendNetFPRequest(&request) && client.receiveNetFpResponse(callback); });
        return accepted;
    }

    Printed printed;
};

std::string mirroringBody(std::uint32_t enable, std::uint32_t direction, unsigned char from,
                          unsigned char to) {
    return littleEndian(enable) + littleEndian(direction) + static_cast<char>(from) + static_cast<char>(to);
}

bool refuse(NetfpMaster_Response* /*response*/) {
    return false;
}

}  // namespace

TEST_F(NetFPMasterComRequestTest, AsksForThePortOfAnInterface) {
    masterResponds(0, 3);

    const Asked asked = ask("eth1");

    EXPECT_EQ(asked.port, 3);
    EXPECT_EQ(asked.printed, Printed{});
    EXPECT_EQ(master.requests(), std::vector{masterRequest(getSwitchPort, id, "eth1")});
}

TEST_F(NetFPMasterComRequestTest, CutsAnInterfaceNameOf32CharactersOrMoreTo32BytesWithoutATerminator) {
    masterResponds(0, 1);
    std::vector<std::string> expected;
    for (const auto length : std::initializer_list<std::size_t>{0, 31, 32, 33, 4096}) {
        const std::string name(length, 'n');

        EXPECT_EQ(ask(name).port, 1);

        expected.push_back(masterRequest(getSwitchPort, id, name.substr(0, 32)));
    }
    EXPECT_EQ(master.requests(), expected);
}

TEST_F(NetFPMasterComRequestTest, ReturnsAnyPortNumberOfTheMaster) {
    for (const int port : {0, 4, 5, -1, -7, 2147483647, -2147483647 - 1}) {
        masterResponds(0, port);

        EXPECT_EQ(ask().port, port);
    }
}

TEST_F(NetFPMasterComRequestTest, PrintsEachStepOfAPortQueryInVerboseMode) {
    masterResponds(0, 2);
    Korvel::setVerboseMode(true);

    const Asked asked = ask("eth1");

    EXPECT_EQ(asked.port, 2);
    EXPECT_EQ(asked.printed, (Printed{.out = "Sending get interface request for \"eth1\"\n"
                                             "Received response ID: " +
                                             std::to_string(id) +
                                             ", Error Code: 0\n"
                                             "Receive Success Response.  Port Number: 2\n"}));
}

TEST_F(NetFPMasterComRequestTest, ReportsAMatchingResponseWithANonZeroErrorCode) {
    masterResponds(-22, 3);

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, (Printed{.err = "Response from Server was not successful.\n"}));
}

TEST_F(NetFPMasterComRequestTest, ShowsTheErrorCodeInVerboseMode) {
    masterResponds(-22, 3);
    Korvel::setVerboseMode(true);

    EXPECT_EQ(ask("eth1").printed, (Printed{.out = "Sending get interface request for \"eth1\"\n"
                                                   "Received response ID: " +
                                                   std::to_string(id) + ", Error Code: -22\n",
                                            .err = "Response from Server was not successful.\n"}));
}

TEST_F(NetFPMasterComRequestTest, SetsPortMirroringInOneDirection) {
    masterResponds(0);

    EXPECT_TRUE(mirror(true, 1, 1, 2));
    EXPECT_TRUE(mirror(true, 2, 3, 4));
    EXPECT_TRUE(mirror(false, 1, 2, 1));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(master.requests(),
              (std::vector{masterRequest(setPortMirroring, id, mirroringBody(1, 1, 1, 2)),
                           masterRequest(setPortMirroring, id, mirroringBody(1, 2, 3, 4)),
                           masterRequest(setPortMirroring, id, mirroringBody(0, 1, 2, 1))}));
}

TEST_F(NetFPMasterComRequestTest, SendsPortNumbersAbove255AsTheirLow8Bits) {
    masterResponds(0);

    EXPECT_TRUE(mirror(true, 1, 255, 256));
    EXPECT_TRUE(mirror(true, 1, 0x1234, -1));

    EXPECT_EQ(master.requests(),
              (std::vector{masterRequest(setPortMirroring, id, mirroringBody(1, 1, 255, 0)),
                           masterRequest(setPortMirroring, id, mirroringBody(1, 1, 0x34, 255))}));
}

TEST_F(NetFPMasterComRequestTest, PrintsEachStepOfPortMirroringInVerboseMode) {
    masterResponds(0);
    Korvel::setVerboseMode(true);
    const struct {
        bool enable;
        std::uint32_t direction;
        std::string announced;
    } cases[] = {
        {true, 1, "Sending Inbound Port Mirroring Enable request Message.\n"},
        {false, 1, "Sending Inbound Port Mirroring Disable request Message.\n"},
        {true, 2, "Sending Outbound Port Mirroring Enable request Message.\n"},
        {false, 2, "Sending Outbound Port Mirroring Disable request Message.\n"},
    };
    for (const auto& [enable, direction, announced] : cases) {
        EXPECT_TRUE(mirror(enable, direction, 1, 2));
        EXPECT_EQ(printed, (Printed{.out = announced + "Received response ID: " + std::to_string(id) +
                                           ", Error Code: 0\n"
                                           "Received Success Response\n"}));
    }
}

TEST_F(NetFPMasterComRequestTest, FailsPortMirroringThatTheMasterRefuses) {
    masterResponds(1);

    EXPECT_FALSE(mirror(true, 1, 1, 2));

    EXPECT_EQ(printed, (Printed{.err = "Response from Server was not successful.\n"}));
}

TEST_F(NetFPMasterComRequestTest, SendsTheCallersRequestWithItsIdentifier) {
    masterResponds(0);
    NetfpMaster_Request request{};
    request.type = static_cast<NetfpMaster_MessageType>(6);
    for (std::size_t i = 0; i < sizeof request.body; ++i) {
        request.body.bytes[i] = static_cast<std::uint8_t>(i);
    }

    EXPECT_TRUE(exchange(request, nullptr));

    std::string body;
    for (char byte = 0; body.size() < sizeof request.body; ++byte) {
        body.push_back(byte);
    }
    EXPECT_EQ(master.requests(), std::vector{masterRequest(6, id, body)});
    EXPECT_EQ(request.requestId, id);
    EXPECT_EQ(printed, Printed{});
}

TEST_F(NetFPMasterComRequestTest, UsesOnlyTheErrorCodeWithoutACallback) {
    NetfpMaster_Request request{};

    masterResponds(0);
    EXPECT_TRUE(exchange(request, nullptr));
    EXPECT_EQ(printed, Printed{});

    masterResponds(7);
    EXPECT_FALSE(exchange(request, nullptr));
    EXPECT_EQ(printed, (Printed{.err = "Response from Server was not successful.\n"}));
}

TEST_F(NetFPMasterComRequestTest, FailsAResponseThatTheCallbackRefuses) {
    masterResponds(0);
    NetfpMaster_Request request{};

    EXPECT_FALSE(exchange(request, refuse));

    EXPECT_EQ(printed, (Printed{.err = "Response from Server was not successful.\n"}));
}

TEST_F(NetFPMasterComRequestTest, DoesNotCallTheCallbackForAResponseWithAnErrorCode) {
    masterResponds(7);
    NetfpMaster_Request request{};
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(exchange(request, NetFPMasterCom::alwaysTrueCallback));

    EXPECT_EQ(printed, (Printed{.out = "Received response ID: " + std::to_string(id) + ", Error Code: 7\n",
                                .err = "Response from Server was not successful.\n"}));
}
