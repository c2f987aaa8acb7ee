// How the supervision handles the answers of one cycle.

#include "NetlinkWire.hpp"
#include "SupervisionCycleFixture.hpp"

namespace {

class SupervisionMgrResponseTest : public SupervisionCycleFixture {
protected:
    void expectUnhealthy(const std::string& statusLine) {
        EXPECT_EQ(printed, Printed{.err = statusLine + "\n"});
        expectLogged({error(statusLine)});
    }
};

}  // namespace

TEST_F(SupervisionMgrResponseTest, LeavesNoTraceOfAHealthyCycle) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(), sfnAnswer(), proxyAnswer()}), healthy);

    EXPECT_EQ(printed, Printed{});
    expectLogged({});
}

TEST_F(SupervisionMgrResponseTest, AcceptsTheAnswersInAnyOrder) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({proxyAnswer(), iwfAnswer(), sfnAnswer()}), healthy);
    EXPECT_EQ(cycle({sfnAnswer(), proxyAnswer(), iwfAnswer()}), healthy);
    EXPECT_EQ(cycle({sfnAnswer(), iwfAnswer(), proxyAnswer()}), healthy);

    expectLogged({});
}

TEST_F(SupervisionMgrResponseTest, ExpectsTwoAnswersIfOneDispatcherIsSelected) {
    supervise({iwf});

    EXPECT_EQ(cycle({iwfAnswer(), proxyAnswer()}), healthy);

    expectLogged({});
}

TEST_F(SupervisionMgrResponseTest, ExpectsOnlyTheSfnDispatcherIfOnlyItIsSelected) {
    supervise({sfn});

    EXPECT_EQ(cycle({sfnAnswer(), proxyAnswer()}), healthy);

    expectLogged({});
}

TEST_F(SupervisionMgrResponseTest, StopsForAnErrorOfTheIwfDispatcher) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(3), sfnAnswer(), proxyAnswer()}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:ERROR SFN Dispatcher:OK NetfpProxy: OK");
}

TEST_F(SupervisionMgrResponseTest, StopsForAnErrorOfTheSfnDispatcher) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(), sfnAnswer(1), proxyAnswer()}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: OK");
}

TEST_F(SupervisionMgrResponseTest, StopsForAnErrorOfNetfpProxy) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(), sfnAnswer(), proxyAnswer(0x100)}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR");
}

TEST_F(SupervisionMgrResponseTest, ShowsOnlySelectedPeersWhenItStops) {
    supervise({sfn});

    EXPECT_EQ(cycle({proxyAnswer(0xffffffff), sfnAnswer(0x80000000)}), stop);

    expectUnhealthy("Heartbeat status: SFN Dispatcher:ERROR NetfpProxy: ERROR");
}

TEST_F(SupervisionMgrResponseTest, CountsARepeatedAnswerTwice) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(), iwfAnswer(), proxyAnswer()}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: OK");
}

TEST_F(SupervisionMgrResponseTest, UsesThePeersLastAnswer) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(1), iwfAnswer(), proxyAnswer(1)}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: ERROR");
}

TEST_F(SupervisionMgrResponseTest, CountsTheAnswerOfAnUnselectedDispatcher) {
    supervise({iwf});

    EXPECT_EQ(cycle({sfnAnswer(), proxyAnswer()}), stop);

    expectUnhealthy("Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: OK");
}

TEST_F(SupervisionMgrResponseTest, StopsWithoutAStatusLineForAnUnknownPortId) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer(),
                     netlinkMessage(dispatcherSequence, 4000000000U, statusPayload(dispatcherResponse, 0))}),
              stop);

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Invalid dispatcher PID received: 4000000000")});
}

TEST_F(SupervisionMgrResponseTest, IgnoresThePortIdOfNetfpProxy) {
    supervise({iwf});

    EXPECT_EQ(cycle({iwfAnswer(), netlinkMessage(proxySequence, 7, statusPayload(proxyResponse, 0))}),
              healthy);

    expectLogged({});
}
