// The search for the stack's processes in the process listing.

#include <filesystem>

#include <gtest/gtest.h>

#include "BoardCommand.hpp"
#include "Printed.hpp"
#include "StackProcess.hpp"
#include "TestFiles.hpp"
#include "TiLogCollector.hpp"

namespace fs = std::filesystem;
using Korvel::TiLogCollector;
using Pids = TiLogCollector::Pids;

namespace {

const std::string pidFile = "/tmp/korvelpids.tmp";

class TiLogCollectorPidsTest : public testing::Test {
protected:
    TiLogCollectorPidsTest() { fs::remove(pidFile); }

    Pids getPids(const std::vector<std::string>& names, const std::string& path = pidFile) {
        Pids pids;
        printed = printedBy([&] { pids = TiLogCollector::getPids(names, path); });
        return pids;
    }

    /// The process ids that are parsed from a listing of these lines.
    Pids pidsIn(const std::string& listing, const std::vector<std::string>& names = {"one", "two"}) {
        const BoardCommand command("ps", "cat <<END\n" + listing + "\nEND");
        Pids pids = getPids(names);
        EXPECT_EQ(printed, Printed{});
        return pids;
    }

    Printed printed;
};

}  // namespace

TEST_F(TiLogCollectorPidsTest, FindsRunningProcessesByTheirNames) {
    const StackProcess proxy("netfp_proxy");
    const StackProcess server("netfp_server");

    EXPECT_EQ(getPids(TiLogCollector::netfpProcesses),
              (Pids{{"netfp_proxy", proxy.pid()}, {"netfp_server", server.pid()}}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(TiLogCollectorPidsTest, RemovesThePidFileAfterReadingIt) {
    const StackProcess proxy("netfp_proxy");

    getPids({"netfp_proxy"});

    EXPECT_FALSE(fs::exists(pidFile));
}

TEST_F(TiLogCollectorPidsTest, SkipsLinesWithTheToolsOwnName) {
    const StackProcess proxy("netfp_proxy");
    const StackProcess other("netfp_server", ":", "started-by-korvel");

    EXPECT_EQ(getPids(TiLogCollector::netfpProcesses), (Pids{{"netfp_proxy", proxy.pid()}}));
}

TEST_F(TiLogCollectorPidsTest, FindsNothingAndKeepsThePidFileIfNothingRuns) {
    EXPECT_EQ(getPids(TiLogCollector::netfpProcesses), Pids{});

    EXPECT_EQ(printed, (Printed{.err = "Command: ps aux | grep -v -E \"grep|korvel\" | grep -E "
                                       "\"netfp_server|netfp_proxy|netfp_master|resmgr_server\" > "
                                       "/tmp/korvelpids.tmp exited with error, exit code: 1\n"}));
    EXPECT_EQ(contentOfFile(pidFile), "");
}

TEST_F(TiLogCollectorPidsTest, ReportsAPidFileThatCannotBeOpened) {
    const BoardCommand command("grep", "[ \"$1\" = -E ] && rm " + pidFile + "; cat > /dev/null");

    EXPECT_EQ(getPids({"one"}), Pids{});

    EXPECT_EQ(printed, (Printed{.err = "Error while opening /tmp/korvelpids.tmp\n"}));
}

TEST_F(TiLogCollectorPidsTest, LeavesItToTheShellToReportAFolderInWhichNobodyCanCreateThePidFile) {
    fs::create_directory("/tmp/closed");
    fs::permissions("/tmp/closed", fs::perms::owner_read | fs::perms::owner_exec);
    const struct {
        std::string path;
        std::string reason;
    } cases[] = {{"/tmp/absent/pids.tmp", "Directory nonexistent"},
                 {"/tmp/closed/pids.tmp", "Permission denied"}};
    for (const auto& [path, reason] : cases) {
        SCOPED_TRACE(path);

        EXPECT_EQ(getPids({"one"}, path), Pids{});

        EXPECT_EQ(printed,
                  (Printed{.err = "sh: 1: cannot create " + path + ": " + reason +
                                  "\nCommand: ps aux | grep -v -E \"grep|korvel\" | grep -E \"one\" > " +
                                  path + " exited with error, exit code: 2\n"}));
    }
}

TEST_F(TiLogCollectorPidsTest, ReadsTheSecondColumnOfEachLineWithTheName) {
    EXPECT_EQ(pidsIn("root 300 0.0 /usr/bin/one -d\n"
                     "root\t301\ttwo"),
              (Pids{{"one", 300}, {"two", 301}}));
}

TEST_F(TiLogCollectorPidsTest, LetsALaterLineOverwriteAnEarlierOne) {
    EXPECT_EQ(pidsIn("root 300 one\n"
                     "root 301 one\n"
                     "root 250 cat /tmp/one.log"),
              (Pids{{"one", 250}}));
}

TEST_F(TiLogCollectorPidsTest, UsesALineForEachNameInIt) {
    EXPECT_EQ(pidsIn("one 300 /bin/two"), (Pids{{"one", 300}, {"two", 300}}));
}

TEST_F(TiLogCollectorPidsTest, ReadsNoPidAs0) {
    EXPECT_EQ(pidsIn("root nothing one"), (Pids{{"one", 0}}));
    EXPECT_EQ(pidsIn("one"), (Pids{{"one", 0}}));
    EXPECT_EQ(pidsIn("root 99999999999 one"), (Pids{{"one", 0}}));
    EXPECT_EQ(pidsIn("root 12th one"), (Pids{{"one", 12}}));
}

TEST_F(TiLogCollectorPidsTest, DoesNotFollowALinkInPlaceOfThePidFile) {
    const StackProcess proxy("netfp_proxy");
    writeFile("/tmp/victim", "precious");
    fs::create_symlink("/tmp/victim", pidFile);

    EXPECT_EQ(getPids({"netfp_proxy"}), (Pids{{"netfp_proxy", proxy.pid()}}));

    EXPECT_EQ(contentOfFile("/tmp/victim"), "precious");
}
