#include <filesystem>

#include "CollectionFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;

namespace {

/// The temporary file for the process listing.
class PidFileTest : public CollectionFixture {
protected:
    static constexpr const char* pidFile = "/tmp/korvelpids.tmp";
    /// The error if the search ends with this exit code.
    static std::string failedListing(int code) {
        return "Command: " + std::string(listing) + " exited with error, exit code: " + std::to_string(code) +
               "\n";
    }

    /// A `ps` command that prints this listing.
    static Surroundings withListing(const std::string& lines) {
        writeFile("/tmp/listing", lines);
        return withCommand("ps", "cat /tmp/listing\n");
    }

    static Surroundings withoutNetfpProcesses() { return withListing("USER PID COMMAND\n"); }
};

TEST_F(PidFileTest, ItIsBesideTheWorkDirectoryAndIsRemovedAfterReading) {
    startBoard();
    withListing("root 0 netfp_proxy\nroot 7 sshd\nroot 0 resmgr_server\n");
    const Surroundings surroundings =
        withCommand("rm", "echo \"$*\" > /tmp/removed\ncat \"$2\" >> /tmp/removed\nexec /bin/rm \"$@\"\n");

    const Outcome outcome = collect({"dump", "slog"}, surroundings);

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(contentOfFile("/tmp/removed"),
              "-f /tmp/korvelpids.tmp\nroot 0 netfp_proxy\nroot 0 resmgr_server\n");
    EXPECT_FALSE(fs::exists(pidFile));
}

TEST_F(PidFileTest, ItStaysIfNoProcessIsFound) {
    startBoard();

    const Outcome outcome = collect({"dump", "proxy"}, withoutNetfpProcesses());

    EXPECT_EQ(outcome, success("", failedListing(1)));
    EXPECT_EQ(contentOfFile(pidFile), "");
    EXPECT_EQ(workFiles(), Files{});
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(PidFileTest, ALinkInItsPlaceIsNotFollowed) {
    startBoard();
    writeFile("/tmp/precious", "precious");
    fs::create_symlink("/tmp/precious", pidFile);

    const Outcome outcome = collect({"dump", "proxy"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(contentOfFile("/tmp/precious"), "precious");
    EXPECT_FALSE(fs::is_symlink(pidFile));
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
}

TEST_F(PidFileTest, ALinkInItsPlaceIsNotFollowedIfNoProcessIsFound) {
    startBoard();
    writeFile("/tmp/precious", "precious");
    fs::create_symlink("/tmp/precious", pidFile);

    const Outcome outcome = collect({"dump", "proxy"}, withoutNetfpProcesses());

    EXPECT_EQ(outcome, success("", failedListing(1)));
    EXPECT_EQ(contentOfFile("/tmp/precious"), "precious");
    EXPECT_EQ(contentOfFile(pidFile), "");
}

TEST_F(PidFileTest, ALinkThatRemainsIsNotFollowedAndSkipsEveryProcess) {
    startBoard();
    writeFile("/tmp/precious", "precious");
    fs::create_symlink("/tmp/precious", pidFile);
    for (const std::string fault : {"unlink,unlinkat:error=EPERM", "unlink,unlinkat:retval=0"}) {
        SCOPED_TRACE(fault);

        const Outcome outcome = collectInjected({.faults = {fault}, .path = pidFile}, {"print", "proxy"});

        EXPECT_EQ(outcome, success(section("netfp_proxy", ""), "Error while opening /tmp/korvelpids.tmp\n"));
        EXPECT_EQ(contentOfFile("/tmp/precious"), "precious");
        EXPECT_TRUE(fs::is_symlink(pidFile));
    }
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(PidFileTest, ALinkCannotBePlantedWhileTheListingRuns) {
    startBoard();
    writeFile("/tmp/precious", "precious");
    const std::string proxy = std::to_string(board().pid("netfp_proxy"));

    const Outcome outcome = collect(
        {"dump", "proxy"}, withCommand("ps",
                                       "ln -s /tmp/precious /tmp/korvelpids.tmp && echo > /tmp/planted\n"
                                       "echo root " +
                                           proxy + " netfp_proxy\n"));

    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(fs::exists("/tmp/planted"));
    EXPECT_EQ(contentOfFile("/tmp/precious"), "precious");
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
}

TEST_F(PidFileTest, ADirectoryInItsPlaceIsReportedByTheShellAndSkipsEveryProcess) {
    startBoard();
    fs::create_directory(pidFile);

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome,
              success(section("netfp_proxy", ""),
                      "sh: 1: cannot create /tmp/korvelpids.tmp: Is a directory\n" + failedListing(2)));
    EXPECT_TRUE(fs::is_directory(pidFile));
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(PidFileTest, AListingThatCannotBeReadSkipsEveryProcess) {
    startBoard();

    const Outcome outcome =
        collectInjected({.faults = {"openat:error=EACCES"}, .path = pidFile}, {"dump", "proxy", "server"});

    EXPECT_EQ(outcome, success("", "Error while opening /tmp/korvelpids.tmp\n"));
    EXPECT_EQ(workFiles(), Files{});
    EXPECT_FALSE(fs::exists(pidFile));
}

TEST_F(PidFileTest, NumbersThatAreNoProcessIdsAreSkipped) {
    startBoard();
    const Surroundings surroundings = withListing(
        "root 0 netfp_proxy\n"
        "root 1 netfp_server\n"
        "root -5 netfp_master\n"
        "root many resmgr_server\n");

    const Outcome outcome = collect({"-v", "dump", "proxy", "server", "master", "resmgr"}, surroundings);

    const auto skipped = [](const std::string& process, const std::string& pid) {
        return "Sending 'kill -10' signal to " + process + " [pid:" + pid + "]...\nInvalid pid for " +
               process + " [pid:" + pid + "], process may not be running, skipping\n";
    };
    EXPECT_EQ(outcome, success(verboseStart("", {"fuse", "mmi"}) + "Starting log collection from TI...\n" +
                               skipped("netfp_proxy", "0") + skipped("netfp_server", "1") +
                               skipped("netfp_master", "-5") + skipped("resmgr_server", "0")));
}

TEST_F(PidFileTest, ALineCountsForEachOfItsNamesAndTheLastLineWins) {
    startBoard();
    const std::string server = std::to_string(board().pid("netfp_server"));
    const std::string proxy = std::to_string(board().pid("netfp_proxy"));
    const Surroundings surroundings = withListing(
        "root 999999 netfp_server\n"
        "root " +
        proxy +
        " netfp_proxy --beside netfp_server\n"
        "root " +
        server +
        " /usr/sbin/netfp_server -f\n"
        "root 999998 korvel netfp_server\n");

    const Outcome outcome = collect({"dump", "proxy", "server"}, surroundings);

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy", "netfp_server"}));
}

TEST_F(PidFileTest, ALineWithOneWordClearsAnEarlierNumber) {
    startBoard();
    const std::string proxy = std::to_string(board().pid("netfp_proxy"));
    const Surroundings surroundings = withListing("root " + proxy + " netfp_proxy\nnetfp_proxy\n");

    const Outcome outcome = collect({"dump", "proxy"}, surroundings);

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), Files{});
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(PidFileTest, AListingThatFailsSkipsEveryProcess) {
    startBoard();

    const Outcome outcome = collect({"print", "proxy"}, withCommand("grep", "exit 2\n"));

    EXPECT_EQ(outcome, success(section("netfp_proxy", ""), failedListing(2)));
}

}  // namespace
