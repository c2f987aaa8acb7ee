// "resetqosstats" and the dispatchers' statistics that it clears.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "FakeTime.hpp"
#include "Injection.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"
#include "ScriptedPeer.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;
using Boardsim::Deployment;
using Boardsim::parsePeerFault;
using Boardsim::Scenario;

namespace {

using Lines = std::vector<std::string>;

const std::string iwfCleared = "iwf: QoS statistics cleared\n";
const std::string sfnCleared = "sfn: QoS statistics cleared\n";
const std::string pollTimedOut = "poll(): Timed out while waiting for response\n";
const Lines request{"7265736574716f737374617473"};  // "resetqosstats"

Lines statistics(const std::string& instance) {
    return linesOfFile("/tmp/fuse/" + instance + "/qosStats");
}

/// The same statistics when each of them is zero.
Lines zeroed(Lines lines) {
    for (auto line = lines.begin() + 1; line != lines.end(); ++line) {
        const std::size_t valueEnd = line->size();
        *line = line->substr(0, line->find_last_of(' '));
        line->resize(valueEnd - 1, ' ');
        *line += '0';
    }
    return lines;
}

Scenario withIwfFault(const std::string& fault) {
    return {.faults = {parsePeerFault("iwf_dispatcher=" + fault)}};
}

void expectReset(const std::string& fault, const Outcome& outcome) {
    const Board board(withIwfFault(fault));
    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats"}), outcome);
    EXPECT_EQ(Board::received("iwf_dispatcher"), request);
}

}  // namespace

TEST(ResetQosStats, ClearsOnlyTheStatisticsOfTheSelectedInstance) {
    const Board board({});
    const Lines iwf = statistics("iwf");
    const Lines sfn = statistics("sfn");
    ASSERT_NE(iwf, zeroed(iwf));

    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats"}), (Outcome{.status = 0, .out = iwfCleared, .err = ""}));

    EXPECT_EQ(statistics("iwf"), zeroed(iwf));
    EXPECT_EQ(statistics("sfn"), sfn);
    EXPECT_EQ(Board::received("iwf_dispatcher"), request);
    EXPECT_EQ(Board::received("sfn_dispatcher"), Lines{});
}

TEST(ResetQosStats, ClearsBothInstancesInTheirOrder) {
    const Board board({});
    const Lines iwf = statistics("iwf");
    const Lines sfn = statistics("sfn");

    EXPECT_EQ(korvel({"-d", "all", "resetqosstats"}),
              (Outcome{.status = 0, .out = iwfCleared + sfnCleared, .err = ""}));

    EXPECT_EQ(statistics("iwf"), zeroed(iwf));
    EXPECT_EQ(statistics("sfn"), zeroed(sfn));
}

TEST(ResetQosStats, CanBeRepeated) {
    const Board board({.deployment = Deployment::sfnAntenna});

    for (int run = 1; run <= 3; ++run) {
        EXPECT_EQ(korvel({"-d", "sfn", "resetqosstats"}),
                  (Outcome{.status = 0, .out = sfnCleared, .err = ""}));
    }
}

TEST(ResetQosStats, RefusesAFurtherArgumentBeforeItSendsARequest) {
    const Board board({});

    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats", "now"}),
              (Outcome{.status = 1, .out = "", .err = "ResetQosStats: Wrong number of parameters\n"}));

    EXPECT_EQ(Board::received("iwf_dispatcher"), Lines{});
}

TEST(ResetQosStats, FailsAtTheFirstInstanceThatStaysSilent) {
    const Board board(withIwfFault("silent"));
    const Lines sfn = statistics("sfn");

    EXPECT_EQ(korvel({"-d", "all", "resetqosstats"}), (Outcome{.status = 1, .out = "", .err = pollTimedOut}));

    EXPECT_EQ(Board::received("iwf_dispatcher"), request);
    EXPECT_EQ(Board::received("sfn_dispatcher"), Lines{});
    EXPECT_EQ(statistics("sfn"), sfn);
}

TEST(ResetQosStats, FailsIfNobodyListens) {
    const Board board({.without = {"iwf_dispatcher"}});

    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats"}), (Outcome{.status = 1, .out = "", .err = pollTimedOut}));
}

TEST(ResetQosStats, WaitsForASlowDispatcher) {
    expectReset("slow:300", {.status = 0, .out = iwfCleared, .err = ""});
}

TEST(ResetQosStats, PrintsTheTextOfADispatcherThatDies) {
    expectReset("dying", {.status = 0, .out = iwfCleared, .err = pollTimedOut});
}

TEST(ResetQosStats, PrintsTheTextBeforeAnEmptyDatagram) {
    expectReset("empty",
                {.status = 0, .out = iwfCleared, .err = "recv(): Peer has performed an orderly shutdown\n"});
}

TEST(ResetQosStats, PrintsAMarkerThatIsJoinedToTheText) {
    expectReset("joined",
                {.status = 0, .out = "iwf: QoS statistics cleared<MMI_END_OF_MSG>\n", .err = pollTimedOut});
}

TEST(ResetQosStats, CutsLongTextsAt56Bytes) {
    expectReset("unended", {.status = 0,
                            .out = "iwf: QoS statistics cleared" + std::string(29, '.') + "\n",
                            .err = pollTimedOut});
}

TEST(ResetQosStats, PrintsTextLeftFromAnEarlierCommand) {
    expectReset("stale",
                {.status = 0, .out = "left over from an earlier command\n\n" + iwfCleared, .err = ""});
}

TEST(ResetQosStats, StopsReadingAnEndlessAnswer) {
    const Board board(withIwfFault("endless"));

    const Outcome outcome = korvel({"-d", "iwf", "resetqosstats"}, atSpeed(15));

    std::string repeated = iwfCleared;
    while (repeated.size() < outcome.out.size()) {
        repeated += iwfCleared;
    }
    EXPECT_TRUE(outcome.out == repeated);  // too long to print in a failure
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(ResetQosStats, StopsReadingAnEndlessAnswerIfTheWallClockIsStopped) {
    const Board board(withIwfFault("endless"));

    const Outcome outcome = korvel({"-d", "iwf", "resetqosstats"}, atMoment("2030-01-01 00:00:00"));

    EXPECT_EQ(outcome.out.substr(0, iwfCleared.size()), iwfCleared);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(ResetQosStats, FailsIfItsPortIsTaken) {
    const Board board({});
    const ScriptedPeer other = ScriptedPeer::atLocalPort(4141);

    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats"}),
              (Outcome{.status = 1,
                       .out = "",
                       .err = "Error while binding  socket, errno:98 Address already in use\n"}));

    EXPECT_EQ(Board::received("iwf_dispatcher"), Lines{});
}

TEST(ResetQosStats, FailsIfItsOutputIsLost) {
    const Board board({});

    EXPECT_EQ(korvel({"-d", "iwf", "resetqosstats"}, {.standardOutput = "/dev/full"}),
              (Outcome{.status = 1,
                       .out = "",
                       .err = "Error while writing standard output: No space left on device\n"}));
}

TEST(ResetQosStats, KeepsWaitingIfAnAnnouncedAnswerIsMissing) {
    const Board board({});

    EXPECT_EQ(runInjected({.faults = {"poll,ppoll:retval=1:when=1", "recvfrom:error=EAGAIN:when=1"}},
                          {"korvel", "-d", "iwf", "resetqosstats"}),
              (Outcome{.status = 0, .out = iwfCleared, .err = ""}));
}

TEST(ResetQosStats, RepeatsInterruptedSystemCalls) {
    const Board board({});

    EXPECT_EQ(runInjected({.faults = {"poll,ppoll:error=EINTR:when=1", "sendto:error=EINTR:when=1",
                                      "recvfrom:error=EINTR:when=1"}},
                          {"korvel", "-d", "iwf", "resetqosstats"}),
              (Outcome{.status = 0, .out = iwfCleared, .err = ""}));
}
