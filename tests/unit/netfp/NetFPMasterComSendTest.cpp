// A NetFP master that cannot receive requests.

#include <unistd.h>

#include "NetFPMasterComFixture.hpp"
#include "NetFPMasterSocket.hpp"
#include "NetfpMasterWire.hpp"
#include "UniqueFd.hpp"

using Korvel::NetFPMasterCom;

namespace {

class NetFPMasterComSendTest : public NetFPMasterComFixture {
protected:
    /// Gives the client another path of its master.
    static void givenMasterPath(const std::string& path) { NetFPMasterCom::setMasterSocketPath(path); }
};

}  // namespace

TEST_F(NetFPMasterComSendTest, NamesThePathIfNoMasterRuns) {
    givenMasterPath("/tmp/nobody");

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, (Printed{.err = "Failed to Send to Master Socket \"/tmp/nobody\": 2: No such "
                                             "file or directory\n"}));
}

TEST_F(NetFPMasterComSendTest, NamesThePathIfTheMasterHasExitedButItsFileExists) {
    ::close(Korvel::connectAndBindToLinuxSocket("/tmp/gone"));
    givenMasterPath("/tmp/gone");

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed,
              (Printed{.err = "Failed to Send to Master Socket \"/tmp/gone\": 111: Connection refused\n"}));
}

TEST_F(NetFPMasterComSendTest, FailsPortMirroringIfNoMasterRuns) {
    givenMasterPath("/tmp/nobody");
    bool done = true;

    const Printed printed =
        printedBy([&] { done = client.setPortMirroring(true, Netfp_Direction_INBOUND, 1, 2); });

    EXPECT_FALSE(done);
    EXPECT_EQ(printed, (Printed{.err = "Failed to Send to Master Socket \"/tmp/nobody\": 2: No such file or "
                                       "directory\n"}));
}

TEST_F(NetFPMasterComSendTest, ReachesAMasterWhosePathIsAsLongAsAnAddressHolds) {
    const std::string path = "/tmp/" + std::string(102, 'm');
    ASSERT_EQ(path.size(), 107);
    ScriptedPeer distant = ScriptedPeer::atPath(path);
    distant.answers([](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(request), 0, 4));
    });
    givenMasterPath(path);

    EXPECT_EQ(ask().port, 4);
}

TEST_F(NetFPMasterComSendTest, RefusesAMasterPathThatIsTooLongForAnAddress) {
    for (const auto length : std::initializer_list<std::size_t>{108, 4096}) {
        const std::string path(length, 'm');
        givenMasterPath(path);

        const Asked asked = ask();

        EXPECT_EQ(asked.port, -1);
        EXPECT_EQ(asked.printed, (Printed{.err = "Failed to Send to Master Socket \"" + path +
                                                 "\": 36: File name too long\n"}));
    }
}

TEST_F(NetFPMasterComSendTest, TimesOutIfTheMastersQueueIsFull) {
    const Base::UniqueFd deaf(Korvel::connectAndBindToLinuxSocket("/tmp/deaf"));
    givenMasterPath("/tmp/deaf");
    NetfpMaster_Request request{};

    const Printed printed = printedBy([&] {
        while (client.sendNetFPRequest(&request)) {
        }
    });

    EXPECT_EQ(printed, (Printed{.err = "Failed to Send to Master Socket \"/tmp/deaf\": 11: Resource "
                                       "temporarily unavailable\n"}));
}

TEST_F(NetFPMasterComSendTest, NeedsAConnectedSocket) {
    NetFPMasterCom unconnected;
    NetfpMaster_Request request{};
    bool sent = true;

    const Printed printed = printedBy([&] { sent = unconnected.sendNetFPRequest(&request); });

    EXPECT_FALSE(sent);
    EXPECT_EQ(printed, (Printed{.err = "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 9: Bad file "
                                       "descriptor\n"}));
}

TEST_F(NetFPMasterComSendTest, RefusesAMissingRequest) {
    bool sent = true;

    const Printed printed = printedBy([&] { sent = client.sendNetFPRequest(nullptr); });

    EXPECT_FALSE(sent);
    EXPECT_EQ(printed,
              (Printed{.err = "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 14: Bad address\n"}));
}
