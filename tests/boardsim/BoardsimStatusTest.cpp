// boardsim status in the test's own process table, so that it does not see the boards of other tests.

#include <string>

#include <gtest/gtest.h>

#include "BoardStatus.hpp"
#include "Boardsim.hpp"

TEST(BoardsimStatusTest, ShowsEachPeerAndWhatItLastReceivedAndAnswered) {
    const Outcome outcome = apart(
        "board --deployment iwf --without resmgr_server --fault netfp_server=short --fault netfp_proxy=dying "
        "--fault netfp_proxy=netlink-slow:5 --fault netfp_master=dump-silent\n"
        "kill -USR1 $(pidof netfp_server); until $0 status | grep -q -e '->'; do :; done\n"
        "kill -USR1 $(pidof netfp_proxy); while pidof netfp_proxy > /dev/null; do :; done\n"
        "$0 status");

    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(steady(outcome.out),
              "Board ID since TIME: sh -c echo ready; exec sleep 1000\n"
              "  PEER                PID  STATE    RECEIVED  ANSWERED  FAULTS\n"
              "  system_log           ID  running         0         0  -\n"
              "  netfp_master         ID  running         0         0  dump-silent\n"
              "  netfp_proxy           -  dead            1         1  dying, netlink-slow:5\n"
              "  netfp_server         ID  running         1         1  short\n"
              "  iwf_dispatcher       ID  running         0         0  -\n"
              "\n"
              "  TIME  netfp_server    <- SIGUSR1\n"
              "  TIME  netfp_server    -> dump in /tmp/netfp_server.log (41 bytes, fault short)\n"
              "  TIME  netfp_proxy     <- SIGUSR1\n"
              "  TIME  netfp_proxy     -> dump in /tmp/netfp_proxy.log (147 bytes, fault dying)\n"
              "  TIME  netfp_proxy     -- it dies (fault dying)\n");
}

TEST(BoardsimStatusTest, ShowsTheTraffic) {
    const Outcome outcome = apart("board --traffic leak:60 --seed 7; $0 status | sed -n 2,3p");

    EXPECT_EQ(outcome.out,
              "  traffic leak:60, seed 7\n"
              "  PEER                PID  STATE    RECEIVED  ANSWERED  FAULTS\n");
}

TEST(BoardsimStatusTest, ShowsARequestWhenItArrives) {
    const Outcome outcome = apart(
        "board\n"
        "follow --follow 9\n"
        "kill -USR1 $(pidof netfp_server); next; next\n"
        "kill $board; next; wait $COPROC_PID && echo followed to the end");

    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(steady(outcome.out),
              "TIME  netfp_server    <- SIGUSR1\n"
              "TIME  netfp_server    -> dump in /tmp/netfp_server.log (343 bytes)\n"
              "Board ID has ended.\n"
              "followed to the end\n");
}

TEST(BoardsimStatusTest, ShowsSeveralBoardsSeparately) {
    const Outcome outcome = apart(
        "board --bare; first=$board; board --bare; second=$board\n"
        "$0 status | sed \"s/Board $first /first /; s/Board $second /second /\"");

    EXPECT_EQ(steady(outcome.out),
              "first since TIME: sh -c echo ready; exec sleep 1000\n"
              "  bare, without peers\n"
              "\n"
              "second since TIME: sh -c echo ready; exec sleep 1000\n"
              "  bare, without peers\n");
}

TEST(BoardsimStatusTest, NamesTheBoardOfEachLineIfItFollowsSeveral) {
    const Outcome outcome = apart(
        "board; first=$board; board --bare; second=$board\n"
        "follow -f 12\n"
        "{ kill -USR1 $(pidof netfp_server); next; next; kill $second; next; } |\n"
        "    sed \"s/Board $first/first/; s/Board $second/second/\"");

    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(steady(outcome.out),
              "first:\n"
              "TIME  netfp_server    <- SIGUSR1\n"
              "TIME  netfp_server    -> dump in /tmp/netfp_server.log (343 bytes)\n");
}

TEST(BoardsimStatusTest, WorksOnTheBoardItself) {
    const Outcome outcome = boardsim({"--bare", "--", "boardsim", "status"});

    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(steady(outcome.out), "Board ID since TIME: boardsim status\n  bare, without peers\n");
}

TEST(BoardsimStatusTest, ReportsThatNoBoardIsRunning) {
    for (const char* option : {"", "--follow"}) {
        EXPECT_EQ(apart(std::string("$0 status ") + option),
                  (Outcome{.status = 1, .out = "No board is running.\n", .err = ""}));
    }
}

TEST(BoardsimStatusTest, ForgetsABoardThatWasKilled) {
    const Outcome outcome =
        apart("board; kill -KILL $board; while $0 status > /dev/null; do :; done; $0 status");

    EXPECT_EQ(outcome, (Outcome{.status = 1, .out = "No board is running.\n", .err = ""}));
}

TEST(BoardsimStatusTest, RefusesOtherArguments) {
    EXPECT_EQ(
        boardsim({"status", "--colour"}),
        (Outcome{
            .status = 2, .out = "", .err = "boardsim: status takes no option but --follow: --colour\n"}));
}

TEST(BoardsimStatusTest, IsACommandOnTheBoardAfterTwoDashes) {
    EXPECT_EQ(boardsim({"--bare", "--", "status"}).status, 127);
}
