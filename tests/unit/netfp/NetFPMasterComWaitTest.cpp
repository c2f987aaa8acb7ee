// The wait for the NetFP master's response: the events that end it, and those that do not.

#include <atomic>
#include <chrono>
#include <thread>

#include "FailingCall.hpp"
#include "NetFPMasterComFixture.hpp"
#include "NetfpMasterWire.hpp"
#include "SignalStorm.hpp"
#include "VerboseMode.hpp"

using Korvel::NetFPMasterCom;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class NetFPMasterComWaitTest : public NetFPMasterComFixture {
protected:
    bool mirror() { return client.setPortMirroring(true, Netfp_Direction_INBOUND, 1, 2); }

    std::string response(std::int32_t switchPort) const { return masterResponse(id, 0, switchPort); }
    std::string stale() const { return masterResponse(id - 1, 0, 1); }

    static std::string portRequest(std::uint32_t requestId) {
        return masterRequest(getSwitchPort, requestId, "eth1");
    }

    /// The master sends these bytes again and again until the test ends.
    void masterNeverStopsSending(const std::string& datagram) {
        master.answers([datagram, this](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
            while (!over) {
                reply(datagram);
            }
        });
    }

    void TearDown() override {
        over = true;
        NetFPMasterComFixture::TearDown();
    }

private:
    std::atomic<bool> over = false;
};

}  // namespace

TEST_F(NetFPMasterComWaitTest, WaitsOneSecondByDefault) {
    NetFPMasterCom::setTimeout(10);
    const auto start = steady_clock::now();

    const Asked asked = ask();

    EXPECT_GE(steady_clock::now() - start, 1s);
    EXPECT_EQ(asked.port, -1);
}

TEST_F(NetFPMasterComWaitTest, GivesUpSilentlyOnASilentMasterAndUsesANewIdentifierNext) {
    NetFPMasterCom::setTimeout(2);

    for (std::uint32_t silences = 1; silences <= 3; ++silences) {
        const Asked asked = ask();

        EXPECT_EQ(asked.port, -1);
        EXPECT_EQ(asked.printed, Printed{});
    }

    EXPECT_EQ(master.awaitRequests(3),
              (std::vector{portRequest(id), portRequest(id + 1), portRequest(id + 2)}));
}

TEST_F(NetFPMasterComWaitTest, KeepsItsIdentifierAfterAResponse) {
    masterResponds(0, 1);
    ask();
    masterResponds(1);
    ask();
    ask();

    EXPECT_EQ(master.requests(), (std::vector{portRequest(id), portRequest(id), portRequest(id)}));
}

TEST_F(NetFPMasterComWaitTest, SkipsALateAnswerToAnEarlierRequest) {
    NetFPMasterCom::setTimeout(1);
    ask();
    NetFPMasterCom::setTimeout(100);
    masterSends({masterResponse(id, 0, 1), masterResponse(id + 1, 0, 4)});
    Korvel::setVerboseMode(true);

    const Asked asked = ask();

    EXPECT_EQ(asked.port, 4);
    EXPECT_EQ(asked.printed, (Printed{.out = "Sending get interface request for \"eth1\"\n"
                                             "Received response ID: " +
                                             std::to_string(id) +
                                             ", Error Code: 0\n"
                                             "Response from Server does not match Request\n"
                                             "Received response ID: " +
                                             std::to_string(id + 1) +
                                             ", Error Code: 0\n"
                                             "Receive Success Response.  Port Number: 4\n"}));
}

TEST_F(NetFPMasterComWaitTest, SkipsDatagramsThatAreTooShortForAPort) {
    std::vector<std::string> datagrams;
    for (const auto size : std::initializer_list<std::size_t>{0, 1, 15, 16, 19}) {
        datagrams.push_back(response(1).substr(0, size));
    }
    datagrams.push_back(response(3).substr(0, 20));
    masterSends(datagrams);
    Korvel::setVerboseMode(true);

    const Asked asked = ask();

    EXPECT_EQ(asked.port, 3);
    EXPECT_EQ(asked.printed, (Printed{.out = "Sending get interface request for \"eth1\"\n"
                                             "Received response ID: " +
                                             std::to_string(id) +
                                             ", Error Code: 0\n"
                                             "Receive Success Response.  Port Number: 3\n"}));
}

TEST_F(NetFPMasterComWaitTest, AcceptsARefusalThatIsTooShortForAPort) {
    for (const auto size : std::initializer_list<std::size_t>{16, 19}) {
        masterSends({masterResponse(id, unknownInterface).substr(0, size)});
        Korvel::setVerboseMode(true);

        const Asked asked = ask();

        EXPECT_EQ(asked.port, -1);
        EXPECT_EQ(asked.printed, (Printed{.out = "Sending get interface request for \"eth1\"\n"
                                                 "Received response ID: " +
                                                 std::to_string(id) + ", Error Code: -1\n",
                                          .err = "Response from Server was not successful.\n"}));
    }
}

TEST_F(NetFPMasterComWaitTest, SkipsARefusalThatIsCutInItsErrorCode) {
    masterSends({masterResponse(id, unknownInterface).substr(0, 15), response(3)});

    const Asked asked = ask();

    EXPECT_EQ(asked.port, 3);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, NeedsOnlyIdentifierAndErrorCodeOfOtherResponses) {
    masterSends({response(0).substr(0, 15), response(0).substr(0, 16)});
    Korvel::setVerboseMode(true);
    bool done = false;

    const Printed printed = printedBy([&] { done = mirror(); });

    EXPECT_TRUE(done);
    EXPECT_EQ(printed, (Printed{.out = "Sending Inbound Port Mirroring Enable request Message.\n"
                                       "Received response ID: " +
                                       std::to_string(id) +
                                       ", Error Code: 0\n"
                                       "Received Success Response\n"}));
}

TEST_F(NetFPMasterComWaitTest, ReadsTheFirst272BytesOfALongerDatagram) {
    for (const auto surplus : std::initializer_list<std::size_t>{1, 60000}) {
        masterSends({response(2) + std::string(surplus, '\x55')});

        EXPECT_EQ(ask().port, 2);
    }
}

TEST_F(NetFPMasterComWaitTest, IsNotShortenedByStaleEmptyAndShortDatagrams) {
    // A tenth of a second for each would take twice the time-out.
    NetFPMasterCom::setTimeout(50);
    std::vector<std::string> datagrams;
    for (int i = 0; i < 34; ++i) {
        datagrams.insert(datagrams.end(), {stale(), "", response(1).substr(0, 15)});
    }
    datagrams.push_back(response(4));
    masterSends(datagrams);

    EXPECT_EQ(ask().port, 4);
}

TEST_F(NetFPMasterComWaitTest, EndsInTimeUnderAFloodOfStaleAnswers) {
    NetFPMasterCom::setTimeout(3);
    masterNeverStopsSending(stale());

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, EndsInTimeUnderAFloodOfEmptyDatagrams) {
    NetFPMasterCom::setTimeout(3);
    masterNeverStopsSending("");

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, EndsInTimeDespiteSignals) {
    NetFPMasterCom::setTimeout(3);
    const SignalStorm storm;

    const Asked asked = ask();

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, ContinuesAfterSignals) {
    master.answers([this](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        while (SignalStorm::count() < manySignals) {
            std::this_thread::sleep_for(1ms);
        }
        reply(response(3));
    });
    const SignalStorm storm;

    const Asked asked = ask();

    EXPECT_EQ(asked.port, 3);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, WaitsWithoutLimitWithATimeOutOf0) {
    NetFPMasterCom::setTimeout(0);
    master.answers([this](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        std::this_thread::sleep_for(1500ms);
        reply(response(2));
    });

    EXPECT_EQ(ask().port, 2);
}

TEST_F(NetFPMasterComWaitTest, SurvivesAReplacedMaster) {
    NetFPMasterCom::setTimeout(2);
    ask();
    ScriptedPeer successor = ScriptedPeer::atPath("/tmp/NetfpMaster");
    successor.answers([](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(request), 0, 1));
    });
    NetFPMasterCom::setTimeout(100);

    EXPECT_EQ(ask().port, 1);
}

TEST_F(NetFPMasterComWaitTest, ReportsAFailedReceiveAndKeepsItsIdentifier) {
    masterResponds(0, 1);
    const struct {
        FailingCall call;
        std::string message;
    } cases[] = {
        {{.number = pollCall, .error = ENOMEM},
         "Failed to receive from Linux Socket: 12: Cannot allocate memory\n"},
        {{.number = receiveCall, .error = ENOMEM},
         "Failed to receive from Linux Socket: 12: Cannot allocate memory\n"},
        {{.number = receiveCall, .error = EBADF},
         "Failed to receive from Linux Socket: 9: Bad file descriptor\n"},
    };
    for (const auto& [call, message] : cases) {
        Asked asked;
        runFailing(call, [&] { asked = ask(); });

        EXPECT_EQ(asked.port, -1);
        EXPECT_EQ(asked.printed, Printed{.err = message});
    }
    EXPECT_EQ(master.awaitRequests(3), (std::vector{portRequest(id), portRequest(id), portRequest(id)}));
}

TEST_F(NetFPMasterComWaitTest, EndsInTimeIfAnAnnouncedDatagramIsMissing) {
    NetFPMasterCom::setTimeout(2);
    masterResponds(0, 1);

    Asked asked;
    runFailing(nothingThere, [&] { asked = ask(); });

    EXPECT_EQ(asked.port, -1);
    EXPECT_EQ(asked.printed, Printed{});
}

TEST_F(NetFPMasterComWaitTest, ReportsAnUnconnectedSocketInsteadOfWaiting) {
    NetFPMasterCom unconnected;
    bool done = true;

    const Printed printed = printedBy([&] { done = unconnected.receiveNetFpResponse(nullptr); });

    EXPECT_FALSE(done);
    EXPECT_EQ(printed, (Printed{.err = "Failed to receive from Linux Socket: 9: Bad file descriptor\n"}));
}
