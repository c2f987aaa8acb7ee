// Faulty peers that decide the run in the first cycle.

#include "SupervisionFixture.hpp"

namespace {

class SupervisionFaultTest : public SupervisionFixture {
protected:
    static constexpr const char* sfnIsIll =
        "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: OK";

    /// A board with this fault. The first cycle is the last one, because the SFN dispatcher reports an error.
    void startBoardOfOneCycle(const std::string& fault) {
        startBoardWithFaults({fault});
        setStatus("sfn_dispatcher", 3);
    }
};

}  // namespace

TEST_F(SupervisionFaultTest, ReportsAndIgnoresAStaleAnswerOfADispatcher) {
    startBoardOfOneCycle("iwf_dispatcher=netlink-stale");

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error("Unexpected netlink sequence number: 0"), error(sfnIsIll)});
}

TEST_F(SupervisionFaultTest, ReportsAndIgnoresAStaleAnswerOfNetfpProxy) {
    startBoardOfOneCycle("netfp_proxy=netlink-stale");

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error("Unexpected netlink sequence number: 100"), error(sfnIsIll)});
}

TEST_F(SupervisionFaultTest, EndsWithoutAStatusLineForADispatcherWithAWrongPortId) {
    startBoardWithFaults({"iwf_dispatcher=netlink-port"});

    EXPECT_EQ(supervise(), endedSilently());

    expectLogged({started("IWF SFN"), error("Invalid dispatcher PID received: 1120")});
}

TEST_F(SupervisionFaultTest, IgnoresThePortIdOfNetfpProxy) {
    startBoardOfOneCycle("netfp_proxy=netlink-port");

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error(sfnIsIll)});
}

TEST_F(SupervisionFaultTest, ReadsTheFirst24BytesOfAnOversizedAnswer) {
    startBoardWithFaults({"iwf_dispatcher=netlink-oversized", "netfp_proxy=netlink-oversized"});
    setStatus("sfn_dispatcher", 3);

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error(sfnIsIll)});
}

TEST_F(SupervisionFaultTest, AcceptsAnAnswerOfExactly24Bytes) {
    startBoardOfOneCycle("netfp_proxy=netlink-truncated:24");

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error(sfnIsIll)});
}

TEST_F(SupervisionFaultTest, EndsForAnErrorOfADispatcher) {
    startBoardWithFaults({"iwf_dispatcher=netlink-error:2147483647"});
    const std::string statusLine = "Heartbeat status: IWF Dispatcher:ERROR SFN Dispatcher:OK NetfpProxy: OK";

    EXPECT_EQ(supervise(), endedWith(statusLine));

    expectLogged({started("IWF SFN"), error(statusLine)});
}

TEST_F(SupervisionFaultTest, EndsForAnErrorOfNetfpProxy) {
    startBoardWithFaults({"netfp_proxy=netlink-error:1"});
    const std::string statusLine = "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR";

    EXPECT_EQ(supervise(), endedWith(statusLine));

    expectLogged({started("IWF SFN"), error(statusLine)});
}

TEST_F(SupervisionFaultTest, WaitsForASlowAnswer) {
    startBoardOfOneCycle("netfp_proxy=netlink-slow:500");

    EXPECT_EQ(supervise(), endedWith(sfnIsIll));

    expectLogged({started("IWF SFN"), error(sfnIsIll)});
}
