// Peers whose answers are missing or invalid. Ten such cycles in a row end the supervision.

#include <functional>

#include "FakeTime.hpp"
#include "SupervisionFixture.hpp"

namespace {

class SupervisionTimeoutTest : public SupervisionFixture {
protected:
    static constexpr unsigned cycles = 10;

    static constexpr const char* withoutIwf =
        "Heartbeat status: IWF Dispatcher:NOT_RECEIVED SFN Dispatcher:OK NetfpProxy: OK";
    static constexpr const char* withoutProxy =
        "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: NOT_RECEIVED";

    /// Runs the supervision only so fast that the peers have time to answer.
    static Outcome superviseFast(const Words& options = {}) { return supervise(options, atSpeed(10)); }

    /// Ten cycles. Each logs its own records, then times out and shows the status.
    static void expectTenCycles(const std::string& statusLine,
                                const std::function<Records(unsigned cycle)>& ofCycle) {
        Records records{started("IWF SFN")};
        for (unsigned cycle = 1; cycle <= cycles; ++cycle) {
            const Records own = ofCycle(cycle);
            records.insert(records.end(), own.begin(), own.end());
            records.insert(records.end(), {error(timeOut), information(statusLine)});
        }
        expectLogged(records);
    }

    /// The same record in each cycle.
    static std::function<Records(unsigned)> always(const std::string& text) {
        return [text](unsigned /*cycle*/) { return Records{error(text)}; };
    }
    /// The same record in each cycle except the first.
    static std::function<Records(unsigned)> fromTheSecondOn(const std::string& text) {
        return [text](unsigned cycle) { return cycle == 1 ? Records{} : Records{error(text)}; };
    }
    static std::function<Records(unsigned)> unexpectedNumber(unsigned before) {
        return [before](unsigned cycle) {
            return Records{error("Unexpected netlink sequence number: " + std::to_string(before + cycle))};
        };
    }
};

}  // namespace

TEST_F(SupervisionTimeoutTest, EndsAfterTenCyclesOfSilence) {
    startBoardWithFaults(
        {"iwf_dispatcher=netlink-silent", "sfn_dispatcher=netlink-silent", "netfp_proxy=netlink-silent"});

    EXPECT_EQ(supervise({}, atSpeed(20)), endedSilently());

    expectTenCycles(
        "Heartbeat status: IWF Dispatcher:NOT_RECEIVED SFN Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED",
        [](unsigned /*cycle*/) { return Records{}; });
    for (const std::string peer : {"iwf_dispatcher", "sfn_dispatcher", "netfp_proxy"}) {
        EXPECT_EQ(requestsTo(peer).size(), cycles) << peer;
    }
}

TEST_F(SupervisionTimeoutTest, NeedsTheAnswerOfEveryPeer) {
    startBoardWithFaults({"iwf_dispatcher=netlink-silent"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutIwf, [](unsigned /*cycle*/) { return Records{}; });
}

TEST_F(SupervisionTimeoutTest, EndsIfNoRequestCanBeSent) {
    startBoard({.without = {"iwf_dispatcher", "sfn_dispatcher", "netfp_proxy"}});

    EXPECT_EQ(supervise({}, atSpeed(20)), endedSilently());

    const Record noDispatcher =
        error("Error while sending heartbeat request to dispatcher, errno: Connection refused");
    const Record noProxy =
        error("Error while sending heartbeat request to netfp proxy, errno: Connection refused");
    expectTenCycles(
        "Heartbeat status: IWF Dispatcher:NOT_RECEIVED SFN Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED",
        [&](unsigned /*cycle*/) {
            return Records{noDispatcher, noDispatcher, noProxy};
        });
}

TEST_F(SupervisionTimeoutTest, ReportsWrongNumbersOfADispatcher) {
    startBoardWithFaults({"iwf_dispatcher=netlink-sequence"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutIwf, unexpectedNumber(1000));
}

TEST_F(SupervisionTimeoutTest, ReportsWrongNumbersOfNetfpProxy) {
    startBoardWithFaults({"netfp_proxy=netlink-sequence"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutProxy, unexpectedNumber(1100));
}

TEST_F(SupervisionTimeoutTest, ReportsWrongMessagesOfADispatcher) {
    startBoardWithFaults({"iwf_dispatcher=netlink-type"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutIwf, always("Dispatcher Heartbeat: unexpected return message type"));
}

TEST_F(SupervisionTimeoutTest, ReportsWrongMessagesOfNetfpProxy) {
    startBoardWithFaults({"netfp_proxy=netlink-type"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutProxy, always("NetfpProxy Heartbeat: unexpected return message type"));
}

TEST_F(SupervisionTimeoutTest, ReportsTruncatedAnswersOfADispatcher) {
    startBoardWithFaults({"iwf_dispatcher=netlink-truncated:23"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutIwf, always("Unexpected message size: 23"));
}

TEST_F(SupervisionTimeoutTest, ReportsTruncatedAnswersOfNetfpProxy) {
    startBoardWithFaults({"netfp_proxy=netlink-truncated:1"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutProxy, always("Unexpected message size: 1"));
}

TEST_F(SupervisionTimeoutTest, ReportsAMissingDispatcherAndContinues) {
    startBoardWithFaults({"iwf_dispatcher=netlink-dying"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutIwf, fromTheSecondOn("Error while sending heartbeat request to dispatcher, errno: "
                                                "Connection refused"));
    EXPECT_EQ(requestsTo("sfn_dispatcher").size(), cycles);
}

TEST_F(SupervisionTimeoutTest, ReportsAMissingNetfpProxyAndContinues) {
    startBoardWithFaults({"netfp_proxy=netlink-dying"});

    EXPECT_EQ(superviseFast(), endedSilently());

    expectTenCycles(withoutProxy, fromTheSecondOn("Error while sending heartbeat request to netfp proxy, "
                                                  "errno: Connection refused"));
    EXPECT_EQ(requestsTo("sfn_dispatcher").size(), cycles);
}

TEST_F(SupervisionTimeoutTest, ReportsAndIgnoresLateAnswers) {
    // At this speed a cycle times out after 400 ms of silence. So each answer arrives in the next cycle.
    startBoardWithFaults({"iwf_dispatcher=netlink-slow:600"});

    EXPECT_EQ(supervise({}, atSpeed(5)), endedSilently());

    expectTenCycles(withoutIwf,
                    [](unsigned cycle) { return cycle == 1 ? Records{} : unexpectedNumber(0)(cycle - 1); });
}
