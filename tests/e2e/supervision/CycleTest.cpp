// What a cycle passes on to the next one, and how long a cycle can last.

#include <algorithm>
#include <chrono>
#include <thread>

#include "FakeTime.hpp"
#include "NetlinkWire.hpp"
#include "ScriptedHeartbeats.hpp"
#include "SupervisionFixture.hpp"
#include "Trace.hpp"

using namespace std::chrono_literals;

namespace {

class SupervisionCycleTest : public SupervisionFixture {
protected:
    static constexpr std::uint32_t proxyResponse = 18;
    static constexpr const char* nothingReceived =
        "Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED";

    /// netfp_proxy sends answers that belong to no cycle until the supervision ends.
    void givenForeignDatagrams() {
        const std::string foreign = netlinkMessage(7, proxyPort, statusPayload(proxyResponse, 0));
        proxy.answers([foreign](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
            while (reply(foreign)) {
                std::this_thread::sleep_for(10ms);
            }
        });
    }

    ScriptedPeer iwf = ScriptedPeer::atNetlinkPort(iwfPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};

}  // namespace

TEST_F(SupervisionCycleTest, RestartsTheCountOfTimeOutsAfterAHealthyCycle) {
    const Heartbeat onceInTwenty = [](unsigned cycle) {
        return cycle == 10 ? std::optional(0U) : std::nullopt;
    };
    iwf.answers(heartbeats(iwfPort, onceInTwenty));
    proxy.answers(heartbeats(proxyPort, onceInTwenty));

    EXPECT_EQ(supervise({"-d", "iwf"}, atSpeed(10)), endedSilently());

    Records records{started("IWF")};
    for (unsigned timeOuts = 0; timeOuts < 9 + 10; ++timeOuts) {
        records.insert(records.end(),
                       {error(timeOut), information("Heartbeat status: IWF Dispatcher:NOT_RECEIVED "
                                                    "NetfpProxy: NOT_RECEIVED")});
    }
    expectInSharedMemory(records);
    EXPECT_EQ(iwf.requests().size(), 20);
    EXPECT_EQ(proxy.requests().size(), 20);
}

TEST_F(SupervisionCycleTest, DoesNotPauseAfterATimeOut) {
    const Heartbeat errorInTheSecond = [](unsigned cycle) {
        return cycle == 2 ? std::optional(1U) : std::nullopt;
    };
    iwf.answers(heartbeats(iwfPort, errorInTheSecond));
    proxy.answers(heartbeats(proxyPort, errorInTheSecond));
    Words pauses;

    EXPECT_EQ(runTraced("/nanosleep", {"korvel", "-d", "iwf", "supervision"}, pauses),
              endedWith("Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: ERROR"));

    std::erase_if(pauses,  // strace notes signals and the end as well
                  [](const std::string& line) { return line.find("nanosleep") == std::string::npos; });
    EXPECT_EQ(pauses, Words{});
    EXPECT_EQ(proxy.requests().size(), 2);
}

TEST_F(SupervisionCycleTest, IgnoresTheLateAnswerToAnEarlierCycle) {
    const std::string late = netlinkMessage(101, proxyPort, statusPayload(proxyResponse, 1));
    iwf.answers(heartbeats(iwfPort, healthyUntil(3)));
    proxy.answers([late](const std::string& request, const ScriptedPeer::Reply& reply) {
        if (cycleOf(request) == 2) {
            reply(late);
        }
        if (cycleOf(request) >= 2) {
            reply(heartbeatAnswer(request, proxyPort));
        }
    });

    const std::string statusLine = "Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: OK";
    EXPECT_EQ(supervise({"-d", "iwf"}, atSpeed(5)), endedWith(statusLine));

    expectInSharedMemory({started("IWF"), error(timeOut),
                          information("Heartbeat status: IWF Dispatcher:OK NetfpProxy: NOT_RECEIVED"),
                          error("Unexpected netlink sequence number: 101"), error(statusLine)});
}

TEST_F(SupervisionCycleTest, EndsAfterForeignDatagramsEvenIfTheWallClockIsStopped) {
    givenForeignDatagrams();

    EXPECT_EQ(supervise({"-d", "iwf"}, atMoment("2030-01-01 00:00:00")), endedWith(nothingReceived));
}

TEST_F(SupervisionCycleTest, EndsAfterTenSecondsOfForeignDatagrams) {
    givenForeignDatagrams();
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(supervise({"-d", "iwf"}, atSpeed(5)), endedWith(nothingReceived));

    EXPECT_GE(std::chrono::steady_clock::now() - start, 10s / 5);
    Words entries = sharedMemoryLog();
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    EXPECT_EQ(entries, (Words{started("IWF").inSharedMemory,
                              error("Unexpected netlink sequence number: 7").inSharedMemory,
                              error(nothingReceived).inSharedMemory}));
    EXPECT_EQ(proxy.requests().size(), 1);
}
