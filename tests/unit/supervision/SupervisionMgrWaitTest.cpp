// The wait for the answers of one cycle: the events that end it early, and those that do not.

#include <chrono>
#include <thread>

#include "FailingCall.hpp"
#include "SignalStorm.hpp"
#include "SupervisionCycleFixture.hpp"

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class SupervisionMgrWaitTest : public SupervisionCycleFixture {
protected:
    /// Runs a cycle that receives these datagrams while a system call fails.
    int cycleFailing(const FailingCall& failing, const std::vector<std::string>& datagrams) {
        int result = -1;
        runFailing(failing, [&] { result = cycle(datagrams); });
        return result;
    }

    /// Checks that the console is empty and that the logs have the reason and the received answers.
    void expectAbandoned(const std::string& reason, const std::string& statusLine) {
        EXPECT_EQ(printed, Printed{});
        expectLogged({error(reason), information(statusLine)});
    }

    const std::string timeOut = "poll(): Timed out while waiting for response";
};

}  // namespace

TEST_F(SupervisionMgrWaitTest, TimesOutAfterTwoSecondsOfSilence) {
    supervise({iwf, sfn});
    const auto start = steady_clock::now();

    EXPECT_EQ(cycle({}), timedOut);

    EXPECT_GE(steady_clock::now() - start, 2s);
    expectAbandoned(timeOut,
                    "Heartbeat status: IWF Dispatcher:NOT_RECEIVED SFN Dispatcher:NOT_RECEIVED NetfpProxy: "
                    "NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, ShowsTheReceivedAnswersWhenItTimesOut) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(), proxyAnswer()}), timedOut);

    expectAbandoned(timeOut,
                    "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: OK");
}

TEST_F(SupervisionMgrWaitTest, TimesOutBeforeItStopsForAnErrorIfAnAnswerIsMissing) {
    supervise({sfn});

    EXPECT_EQ(cycle({sfnAnswer(3)}), timedOut);

    expectAbandoned(timeOut, "Heartbeat status: SFN Dispatcher:ERROR NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, WaitsTwoSecondsForEachDatagram) {
    supervise({iwf});
    const auto start = steady_clock::now();

    EXPECT_EQ(cycleWhere([this](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
                  std::this_thread::sleep_for(1200ms);
                  reply(iwfAnswer());
                  std::this_thread::sleep_for(1200ms);
                  reply(proxyAnswer());
              }),
              healthy);

    EXPECT_GE(steady_clock::now() - start, 2400ms);
    expectLogged({});
}

TEST_F(SupervisionMgrWaitTest, IsNotShortenedBySignals) {
    supervise({iwf});
    const SignalStorm storm;
    const auto start = steady_clock::now();

    EXPECT_EQ(cycle({}), timedOut);

    EXPECT_GE(steady_clock::now() - start, 2s);
    EXPECT_GT(SignalStorm::count(), manySignals);
    expectAbandoned(timeOut, "Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, ContinuesAfterSignals) {
    supervise({iwf});
    const SignalStorm storm;

    EXPECT_EQ(cycleWhere([this](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
                  while (SignalStorm::count() < manySignals) {
                      std::this_thread::sleep_for(1ms);
                  }
                  reply(iwfAnswer());
                  reply(proxyAnswer());
              }),
              healthy);

    EXPECT_EQ(printed, Printed{});
    expectLogged({});
}

TEST_F(SupervisionMgrWaitTest, TimesOutIfAnAnnouncedAnswerIsMissing) {
    supervise({iwf});

    EXPECT_EQ(cycleFailing(nothingThere, {proxyAnswer()}), timedOut);

    expectAbandoned(timeOut, "Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, StopsIfTheWaitFails) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycleFailing({.number = pollCall, .error = ENOMEM}, {}), stop);

    expectAbandoned("poll(): An error occured, errno: Cannot allocate memory",
                    "Heartbeat status: IWF Dispatcher:NOT_RECEIVED SFN Dispatcher:NOT_RECEIVED NetfpProxy: "
                    "NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, StopsIfTheReceiveFails) {
    supervise({iwf});

    EXPECT_EQ(cycleFailing({.number = receiveCall, .error = EIO}, {proxyAnswer()}), stop);

    expectAbandoned("recv(): An error occured, errno: Input/output error",
                    "Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED");
}

TEST_F(SupervisionMgrWaitTest, StopsIfItReceivesNothing) {
    supervise({sfn});

    // A call that fails with error 0 returns 0.
    EXPECT_EQ(cycleFailing({.number = receiveCall, .error = 0}, {proxyAnswer()}), stop);

    expectAbandoned("recv(): Peer has performed an orderly shutdown",
                    "Heartbeat status: SFN Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED");
}
