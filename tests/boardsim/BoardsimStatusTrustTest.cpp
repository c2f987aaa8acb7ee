// boardsim status on a board whose commands manipulate its files.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "BoardStatus.hpp"

namespace {

/// The status of a board after it ran a script, with "TIME" and "ID" as in steady(). The script `onHost` ran
/// on the host before.
std::string statusAfter(const std::string& attack, const std::string& onHost = "") {
    const Outcome outcome =
        apart(onHost + "\nexport attack='" + attack + "'\nboard --deployment iwf\n$0 status");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    return steady(outcome.out);
}

constexpr const char* heading = "Board ID since TIME: sh -c eval \"$attack\"; echo ready; exec sleep 1000\n";

/// The status of a whole board. `counts` are those of the NetFP master, whose log was attacked.
std::string boardWith(const std::string& counts, const std::string& lines = "") {
    return heading +
           std::string(
               "  PEER                PID  STATE    RECEIVED  ANSWERED  FAULTS\n"
               "  system_log           ID  running         0         0  -\n"
               "  netfp_master         ID  running") +
           counts +
           "  -\n"
           "  netfp_proxy          ID  running         0         0  -\n"
           "  netfp_server         ID  running         0         0  -\n"
           "  resmgr_server        ID  running         0         0  -\n"
           "  iwf_dispatcher       ID  running         0         0  -\n" +
           lines;
}

constexpr const char* nothing = "         0         0";
constexpr const char* unreadable = "         ?         ?";

/// A file in a folder that is not on the board.
constexpr const char* hostSecret =
    "secret=$(mktemp -p /var/tmp); trap \"rm $secret\" EXIT; echo \"2026-11-21T10:15:02.123Z <- of the "
    "host\" > $secret; "
    "export secret";

}  // namespace

TEST(BoardsimStatusTrustTest, DoesNotWaitForAFifo) {
    EXPECT_EQ(statusAfter("cd /run/boardsim/log; rm netfp_master; mkfifo netfp_master"),
              boardWith(unreadable));
}

TEST(BoardsimStatusTrustTest, IgnoresAFolder) {
    EXPECT_EQ(statusAfter("cd /run/boardsim/log; rm netfp_master; mkdir netfp_master"),
              boardWith(unreadable));
}

TEST(BoardsimStatusTrustTest, FollowsNoLinkToAFileOfTheHost) {
    EXPECT_EQ(statusAfter("ln -sf $secret /run/boardsim/log/netfp_master", hostSecret), boardWith(nothing));
}

TEST(BoardsimStatusTrustTest, FollowsNoLinkUpwardsToAFileOfTheHost) {
    EXPECT_EQ(
        statusAfter("ln -sf ../../../../../../../../..$secret /run/boardsim/log/netfp_master", hostSecret),
        boardWith(nothing));
}

TEST(BoardsimStatusTrustTest, FollowsNoFolderThatIsALinkToOneOfTheHost) {
    EXPECT_EQ(statusAfter("rm -r /run/boardsim/log; ln -s $folder /run/boardsim/log",
                          "folder=$(mktemp -d -p /var/tmp); trap \"rm -r $folder\" EXIT; export folder; "
                          "echo \"2026-11-21T10:15:02.123Z <- of the host\" > $folder/netfp_master")
                  .find("of the host"),
              std::string::npos);
}

TEST(BoardsimStatusTrustTest, FollowsNoLinkOfTheKernel) {
    EXPECT_EQ(statusAfter("ln -sf /proc/1/root/run/boardsim/log/netfp_proxy /run/boardsim/log/netfp_master"),
              boardWith(unreadable));
}

TEST(BoardsimStatusTrustTest, ReadsNoneOfTheHostsProgramsAndLibraries) {
    EXPECT_EQ(statusAfter("ln -sf /usr/bin/env /run/boardsim/log/netfp_master"), boardWith(unreadable));
}

TEST(BoardsimStatusTrustTest, ReadsNoHugeFile) {
    EXPECT_EQ(statusAfter("truncate -s 8G /run/boardsim/log/netfp_master"), boardWith(unreadable));
}

TEST(BoardsimStatusTrustTest, ShowsEscapesOfALogAsText) {
    EXPECT_EQ(statusAfter("printf \"2026-11-21T10:15:02.123Z <- \\033]0;title\\a\\r\\n\" "
                          "> /run/boardsim/log/netfp_master"),
              boardWith("         1         0", "\n  TIME  netfp_master    <- \\x1b]0;title\\x07\\x0d\n"));
}

TEST(BoardsimStatusTrustTest, CutsALineThatIsTooLong) {
    EXPECT_EQ(
        statusAfter("printf \"2026-11-21T10:15:02.123Z <- %05000d\\n\" 0 > /run/boardsim/log/netfp_master"),
        boardWith("         1         0",
                  "\n  TIME  netfp_master    <- " + std::string(1024 - 28, '0') + "...\n"));
}

TEST(BoardsimStatusTrustTest, ShowsEscapesOfACommandLineAsText) {
    const Outcome outcome =
        apart("read -r < <(exec $0 --bare -- sh -c $'echo ready; exec sleep 1000 # \\033[31m'); $0 status");

    EXPECT_EQ(steady(outcome.out),
              "Board ID since TIME: sh -c echo ready; exec sleep 1000 # \\x1b[31m\n  bare, without peers\n");
}

struct Planted {
    const char* name;
    const char* attack;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const Planted& planted) {
    return stream << planted.name;
}

class BoardsimStatusScenarioTest : public testing::TestWithParam<Planted> {};

TEST_P(BoardsimStatusScenarioTest, ListsTheBoardAndReportsWhyItsPeersAreUnknown) {
    EXPECT_EQ(
        statusAfter(std::string("cd /run/boardsim; ") + GetParam().attack),
        heading + std::string("  peers unknown: /run/boardsim/scenario.toml") + GetParam().reason + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, BoardsimStatusScenarioTest,
    testing::Values(
        Planted{"UnknownKey", "echo \"colour = 1\" > scenario.toml", ":1: colour: unknown key"},
        Planted{"NoToml", "echo ] > scenario.toml",
                ":1: Error while parsing root table: expected keys, tables, whitespace or comments, saw ']'"},
        Planted{"Escapes", "printf \"without = [\\\"\\\\\\\\u001b[31m\\\"]\" > scenario.toml",
                ":1: without: unknown peer: '\\x1b[31m'"},
        Planted{"Missing", "rm scenario.toml", " is missing"},
        Planted{"Fifo", "rm scenario.toml; mkfifo scenario.toml", " is not a regular file"},
        Planted{"Folder", "rm scenario.toml; mkdir scenario.toml", " is not a regular file"},
        Planted{"Huge", "truncate -s 8G scenario.toml", " is larger than 65536 bytes"},
        Planted{"LinkInACircle", "rm scenario.toml; ln -s scenario.toml scenario.toml",
                ": Too many levels of symbolic links"},
        Planted{"EverythingGone", "rm -rf /run/boardsim", " is missing"}),
    [](const auto& row) { return row.param.name; });

TEST(BoardsimStatusTrustTest, TakesNoOtherProcessForABoard) {
    const Outcome outcome = apart(
        "export attack='bash -c \"exec -a /run/boardsim/init sleep 1000 2\" &'; board --bare\n"
        "$0 status");

    EXPECT_EQ(steady(outcome.out), heading + std::string("  bare, without peers\n"));
}

TEST(BoardsimStatusTrustTest, ContinuesToFollowALogThatWasTruncated) {
    const Outcome outcome = apart(
        "board --deployment iwf; log=/proc/$(pidof netfp_server)/root/run/boardsim/log/netfp_server\n"
        "stamp='2026-11-21T10:15:02.123Z <-'; for i in 1 2 3; do echo \"$stamp $i\" >> $log; done\n"
        "follow -f 12; echo \"$stamp after the cut\" > $log\n"
        "(while sleep 0.05; do echo \"$stamp and later\" >> $log; done 2> /dev/null) &\n"
        "next; kill $board");

    EXPECT_EQ(steady(outcome.out), "TIME  netfp_server    <- and later\n");
}
