// The requests of "resetqosstats" to the dispatchers, and the handling of their answers.

#include <chrono>
#include <thread>

#include "KorvelHelp.hpp"
#include "ResetQoSStatsAction.hpp"
#include "ResetQoSStatsFixture.hpp"
#include "SignalStorm.hpp"

namespace Configuration = Korvel::Configuration;

namespace {

using namespace std::chrono_literals;

class ResetQoSStatsActionTest : public ResetQoSStatsFixture {
protected:
    /// One reset of the IWF instance, which answers with these datagrams.
    bool resetAnswered(const Datagrams& datagrams) {
        select(Configuration::IWF);
        answers(iwf, datagrams);
        return reset();
    }
};

}  // namespace

TEST_F(ResetQoSStatsActionTest, SendsItsKeywordAndPrintsTheAnswer) {
    EXPECT_TRUE(resetAnswered({"OK", marker}));

    EXPECT_EQ(printed, (Printed{.out = "OK\n"}));
    EXPECT_EQ(iwf.requests(), Datagrams{"resetqosstats"});
    EXPECT_EQ(iwf.requests().front().size(), 13U);
    EXPECT_EQ(sfn.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsActionTest, AsksTheSelectedInstancesInTheirOrder) {
    select(Configuration::SFN);
    answers(iwf, {"cleared by iwf", marker});
    answers(sfn, {"cleared by sfn", "all of it", marker});

    EXPECT_TRUE(reset());
    EXPECT_EQ(printed, (Printed{.out = "cleared by sfn\nall of it\n"}));

    select(Configuration::IWF);
    EXPECT_TRUE(reset());
    EXPECT_EQ(printed, (Printed{.out = "cleared by iwf\ncleared by sfn\nall of it\n"}));
    EXPECT_EQ(iwf.requests().size(), 1U);
    EXPECT_EQ(sfn.requests().size(), 2U);
}

TEST_F(ResetQoSStatsActionTest, SucceedsIfNoInstanceIsSelected) {
    EXPECT_TRUE(reset());

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(iwf.requests(), Datagrams{});
    EXPECT_EQ(sfn.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsActionTest, ListensAtItsFixedPortOnAnyAddress) {
    select(Configuration::IWF);
    iwf.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& /*reply*/) {
        sendFromElsewhere("OK from elsewhere");
        sendFromElsewhere(marker);
    });

    EXPECT_TRUE(reset());

    EXPECT_EQ(printed, (Printed{.out = "OK from elsewhere\n"}));
}

TEST_F(ResetQoSStatsActionTest, FailsSilentlyIfOnlyTheMarkerArrives) {
    EXPECT_FALSE(resetAnswered({marker}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ResetQoSStatsActionTest, FailsAfterOneAndAHalfSecondsOfSilence) {
    const auto start = std::chrono::steady_clock::now();

    EXPECT_FALSE(resetAnswered({}));

    EXPECT_GE(std::chrono::steady_clock::now() - start, 1500ms);
    EXPECT_EQ(printed, (Printed{.err = timedOut}));
}

TEST_F(ResetQoSStatsActionTest, SucceedsIfTheMarkerIsMissing) {
    EXPECT_TRUE(resetAnswered({"OK", "and more"}));

    EXPECT_EQ(printed, (Printed{.out = "OK\nand more\n", .err = timedOut}));
}

TEST_F(ResetQoSStatsActionTest, DoesNotAskTheNextInstanceIfOneFails) {
    select(Configuration::IWF);
    select(Configuration::SFN);
    answers(sfn, {"OK", marker});

    EXPECT_FALSE(reset());
    EXPECT_EQ(printed, (Printed{.err = timedOut}));
    answers(iwf, {marker});
    EXPECT_FALSE(reset());
    EXPECT_EQ(printed, Printed{});

    EXPECT_EQ(iwf.requests().size(), 2U);
    EXPECT_EQ(sfn.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsActionTest, FailsIfTheLastInstanceFails) {
    select(Configuration::IWF);
    select(Configuration::SFN);
    answers(iwf, {"OK", marker});
    answers(sfn, {marker});

    EXPECT_FALSE(reset());

    EXPECT_EQ(printed, (Printed{.out = "OK\n"}));
}

TEST_F(ResetQoSStatsActionTest, CutsEachDatagramAt56Bytes) {
    const std::string text(400, 'x');

    EXPECT_TRUE(
        resetAnswered({text.substr(0, 55), text.substr(0, 56), text.substr(0, 57), text, "short", marker}));

    const std::string longest = text.substr(0, 56) + "\n";
    EXPECT_EQ(printed, (Printed{.out = text.substr(0, 55) + "\n" + longest + longest + longest + "short\n"}));
}

TEST_F(ResetQoSStatsActionTest, CutsADatagramAtAZeroByte) {
    EXPECT_TRUE(
        resetAnswered({std::string("one\0two", 7), std::string("\0three", 6), marker + '\0' + "four"}));

    EXPECT_EQ(printed, (Printed{.out = "one\n\n"}));
}

TEST_F(ResetQoSStatsActionTest, EndsOnlyAtTheWholeMarker) {
    EXPECT_TRUE(resetAnswered({"OK" + marker, marker + "\n", "<MMI_END_OF_MSG", "<mmi_end_of_msg>", marker}));

    EXPECT_EQ(printed, (Printed{.out = "OK<MMI_END_OF_MSG>\n"
                                       "<MMI_END_OF_MSG>\n\n"
                                       "<MMI_END_OF_MSG\n"
                                       "<mmi_end_of_msg>\n"}));
}

TEST_F(ResetQoSStatsActionTest, EndsAtAnEmptyDatagram) {
    const std::string shutdown = "recv(): Peer has performed an orderly shutdown\n";

    EXPECT_FALSE(resetAnswered({""}));
    EXPECT_EQ(printed, (Printed{.err = shutdown}));

    EXPECT_TRUE(resetAnswered({"OK", "", "more", marker}));
    EXPECT_EQ(printed, (Printed{.out = "OK\n", .err = shutdown}));
}

TEST_F(ResetQoSStatsActionTest, PrintsBytesThatAreNoTextUnchanged) {
    EXPECT_TRUE(resetAnswered({"\x01\xff\n\r%s", marker}));

    EXPECT_EQ(printed, (Printed{.out = "\x01\xff\n\r%s\n"}));
}

TEST_F(ResetQoSStatsActionTest, StopsReadingAnEndlessAnswerAfterSevenAndAHalfSeconds) {
    select(Configuration::IWF);
    const auto lineOf = [](int number) { return std::to_string(number) + " cleared"; };
    iwf.answers([lineOf](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (int line = 0; line < 100; ++line) {
            reply(lineOf(line));
            std::this_thread::sleep_for(100ms);
        }
    });
    const auto start = std::chrono::steady_clock::now();

    EXPECT_TRUE(reset());

    EXPECT_GE(std::chrono::steady_clock::now() - start, 7500ms);
    EXPECT_EQ(printed.err, "");
    std::string lines;
    for (int line = 0; lines.size() < printed.out.size(); ++line) {
        lines += lineOf(line) + "\n";
    }
    EXPECT_EQ(printed.out, lines);
}

TEST_F(ResetQoSStatsActionTest, KeepsWaitingAfterSignals) {
    select(Configuration::IWF);
    iwf.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        const int target = SignalStorm::count() + 20;
        while (SignalStorm::count() < target) {
            std::this_thread::sleep_for(1ms);
        }
        reply("OK");
        reply(marker);
    });
    const SignalStorm storm;

    EXPECT_TRUE(reset());

    EXPECT_EQ(printed, (Printed{.out = "OK\n"}));
}

TEST_F(ResetQoSStatsActionTest, TakesNoArguments) {
    select(Configuration::IWF);
    const Printed refusal{.err = "ResetQosStats: Wrong number of parameters\n"};

    EXPECT_FALSE(reset({"iwf"}));
    EXPECT_EQ(printed, refusal);
    EXPECT_FALSE(reset({"", ""}));
    EXPECT_EQ(printed, refusal);

    EXPECT_EQ(iwf.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsActionTest, PrintsItsHelp) {
    Korvel::ResetQoSStatsAction action;

    EXPECT_EQ(action.getKeyword(), "resetqosstats");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("resetqosstats", "<>", "/bin/k")}));
}
