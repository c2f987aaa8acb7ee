// Requests for log collection: refused requests, the collectors that run, and the order of the steps.

#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "BoardCommand.hpp"
#include "CollectorMgr.hpp"
#include "Configuration.hpp"
#include "HeaderLine.hpp"
#include "PackageFolder.hpp"
#include "Printed.hpp"
#include "SharedLogText.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;
namespace Configuration = Korvel::Configuration;

namespace {

const std::string nothingRuns =
    "Command: ps aux | grep -v -E \"grep|korvel\" | grep -E "
    "\"netfp_server|netfp_proxy|netfp_master|resmgr_server\" > /tmp/korvelpids.tmp exited with error, exit "
    "code: 1\n";
const std::string allTiHeaders = headerLine("netfp_proxy") + "\n" + headerLine("netfp_server") + "\n" +
                                 headerLine("netfp_master") + "\n" + headerLine("resmgr_server") + "\n";

/// A board without processes of the stack. No dispatcher is selected unless the test selects one. Both
/// shared-memory logs have an entry.
class CollectorMgrRequestTest : public testing::Test {
protected:
    CollectorMgrRequestTest()
        : history(writeSharedLog("dispatcher_log_memory", {"history"})),
          syslib(writeSharedLog("syslib_log_memory", {"syslib"})) {
        fs::remove_all("/tmp/korvel");
        fs::remove_all(packageFolder);
        fs::create_directories(packageFolder);
    }

    void TearDown() override {
        Korvel::setVerboseMode(false);
        std::signal(SIGTERM, SIG_DFL);
    }

    /// True if the request was accepted. Stores its output in `printed`.
    bool request(const std::vector<std::string>& words) {
        Korvel::CollectorMgr manager;
        ArgumentVector arguments(words);
        bool accepted = false;
        printed = printedBy([&] { accepted = manager.resolveRequest(arguments.argc(), arguments.argv()); });
        return accepted;
    }

    /// The verbose output of a request that dumps.
    Printed dumpVerbosely(std::vector<std::string> coverage) {
        coverage.insert(coverage.begin(), "dump");
        Korvel::setVerboseMode(true);
        EXPECT_TRUE(request(coverage));
        return printed;
    }

    static std::vector<std::string> dumpedFiles() { return filesBelow("/tmp/korvel"); }

    const std::string history;
    const std::string syslib;
    Printed printed;
};

std::string skipped(const std::string& id) {
    return "Creation of LogCollector of type (" + id + ") skipped - no options specified\n";
}

/// The verbose lines of a collection from these processes. None of them runs.
std::string notRunning(const std::vector<std::string>& processes) {
    std::string lines = "Starting log collection from TI...\n";
    for (const std::string& name : processes) {
        lines += "Sending 'kill -10' signal to " + name + " [pid:0]...\n";
        lines += "Invalid pid for " + name + " [pid:0], process may not be running, skipping\n";
    }
    return lines;
}

const std::string readingFuse = "Starting log collection from fuse file system...\n";
const std::string readingHistory = "Reading HistoryLog...\n";

}  // namespace

TEST_F(CollectorMgrRequestTest, RefusesAnUnknownParameterAndCollectsNothing) {
    EXPECT_FALSE(request({"print", "foo", "dump"}));
    EXPECT_EQ(printed, (Printed{.err = "Unknown parameter: foo\n"}));

    EXPECT_FALSE(request({"dump", ""}));
    EXPECT_EQ(printed, (Printed{.err = "Unknown parameter: \n"}));

    EXPECT_FALSE(request({"Print", "bar"}));
    EXPECT_EQ(printed, (Printed{.err = "Unknown parameter: Print\n"}));

    EXPECT_FALSE(fs::exists("/tmp/korvel"));
}

TEST_F(CollectorMgrRequestTest, RefusesARequestWithoutAnOutputMode) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{}, {"dinf"}, {"all"}, {"netfp", "dall"}}) {
        EXPECT_FALSE(request(words));
        EXPECT_EQ(printed, (Printed{.err = "No parameters were specified\n"}));
    }
    EXPECT_FALSE(fs::exists("/tmp/korvel"));
}

TEST_F(CollectorMgrRequestTest, CollectsEverythingForPrintAloneAndWritesNoFiles) {
    EXPECT_TRUE(request({"print"}));

    EXPECT_EQ(printed, (Printed{.out = headerLine("NETFP LOG") + history + "\n" + allTiHeaders +
                                       headerLine("SYSLIB LOG") + syslib,
                                .err = nothingRuns}));
    EXPECT_EQ(dumpedFiles(), std::vector<std::string>{});
}

TEST_F(CollectorMgrRequestTest, CreatesFilesAndThePackageForPkgAndPrintsNothing) {
    EXPECT_TRUE(request({"pkg"}));

    EXPECT_EQ(printed, Printed{.err = nothingRuns});
    EXPECT_EQ(dumpedFiles(), (std::vector<std::string>{"fuse/HistoryLog.log", "ti/syslib_sm_log.log"}));
    EXPECT_EQ(filesBelow(packageFolder).size(), 1);
}

TEST_F(CollectorMgrRequestTest, DumpsWithoutAPackageForDump) {
    EXPECT_TRUE(request({"dump"}));

    EXPECT_EQ(printed, Printed{.err = nothingRuns});
    EXPECT_EQ(dumpedFiles(), (std::vector<std::string>{"fuse/HistoryLog.log", "ti/syslib_sm_log.log"}));
    EXPECT_EQ(filesBelow(packageFolder), std::vector<std::string>{});
}

TEST_F(CollectorMgrRequestTest, CreatesOnlyTheCollectorsThatAKeywordSelects) {
    const std::string noDispatcher = skipped("fuse") + skipped("mmi");
    const struct {
        std::vector<std::string> words;
        Printed expected;
    } cases[] = {
        {{"server"}, {noDispatcher + notRunning({"netfp_server"}), nothingRuns}},
        {{"proxy"}, {noDispatcher + notRunning({"netfp_proxy"}), nothingRuns}},
        {{"master"}, {noDispatcher + notRunning({"netfp_master"}), nothingRuns}},
        {{"resmgr"}, {noDispatcher + notRunning({"resmgr_server"}), nothingRuns}},
        {{"slog"}, {noDispatcher + notRunning({}), nothingRuns}},
        {{"server", "proxy"}, {noDispatcher + notRunning({"netfp_proxy", "netfp_server"}), nothingRuns}},
        {{"netfp"},
         {noDispatcher + notRunning({"netfp_proxy", "netfp_server", "netfp_master", "resmgr_server"}),
          nothingRuns}},
        {{"dlog"}, {skipped("mmi") + skipped("ti") + readingFuse + readingHistory, ""}},
        {{"dinf"}, {skipped("ti") + readingFuse, ""}},
        {{"dstat"}, {skipped("ti") + readingFuse, ""}},
        {{"dall"}, {skipped("ti") + readingFuse + readingHistory, ""}},
    };
    for (const auto& [words, expected] : cases) {
        EXPECT_EQ(dumpVerbosely(words), expected) << words.front();
    }
}

TEST_F(CollectorMgrRequestTest, SelectsTheSyslibLogBySlogAndNetfpAndAll) {
    const std::pair<std::string, bool> cases[] = {
        {"slog", true}, {"netfp", true}, {"all", true}, {"server", false}, {"resmgr", false}};
    for (const auto& [word, selected] : cases) {
        fs::remove_all("/tmp/korvel");

        EXPECT_TRUE(request({"dump", word}));

        EXPECT_EQ(fs::exists("/tmp/korvel/ti/syslib_sm_log.log"), selected) << word;
    }
}

TEST_F(CollectorMgrRequestTest, SkipsTheOtherCollectorsSilentlyOutsideVerboseMode) {
    EXPECT_TRUE(request({"server", "print"}));

    EXPECT_EQ(printed, (Printed{.out = headerLine("netfp_server") + "\n", .err = nothingRuns}));
}

TEST_F(CollectorMgrRequestTest, CollectsDumpsPacksAndThenPrints) {
    const BoardCommand gathering("fp_linux_log_collect", "rm -r $1/ti");
    writeFile(packageFolder + "/netfp_logs_post_mortem.tgz", "earlier");
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(request({"pkg-sup", "dump", "print", "slog"}));

    EXPECT_EQ(printed, (Printed{.out = skipped("fuse") + skipped("mmi") + notRunning({}) +
                                       "Creating /ffs/run/logs/netfp_logs_sup.tgz package...\n"
                                       "./\n"
                                       "./netfp_logs_post_mortem.tgz\n" +
                                       headerLine("SYSLIB LOG") + syslib,
                                .err = nothingRuns}));
}

TEST_F(CollectorMgrRequestTest, IgnoresSigtermWhileItCreatesAPackage) {
    EXPECT_TRUE(request({"pkg", "dlog"}));

    struct sigaction action {};
    ASSERT_EQ(::sigaction(SIGTERM, nullptr, &action), 0);
    EXPECT_NE(action.sa_handler, SIG_DFL);
    EXPECT_NE(action.sa_handler, SIG_IGN);
    EXPECT_EQ(action.sa_flags & SA_RESTART, 0);
    EXPECT_EQ(std::raise(SIGTERM), 0);
    EXPECT_EQ(std::raise(SIGTERM), 0);
}

TEST_F(CollectorMgrRequestTest, EndsOnSigtermIfItCreatesNoPackage) {
    EXPECT_TRUE(request({"dump", "print", "dlog"}));

    struct sigaction action {};
    ASSERT_EQ(::sigaction(SIGTERM, nullptr, &action), 0);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST_F(CollectorMgrRequestTest, SucceedsEvenIfThePackageFails) {
    fs::remove_all(packageFolder);

    EXPECT_TRUE(request({"pkg-pm", "dlog"}));
}

TEST_F(CollectorMgrRequestTest, SilentlySkipsAShutdownPackageThatIsNotEnabled) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(request({"pkg-sdown"}));
    EXPECT_EQ(printed, Printed{});
    EXPECT_TRUE(request({"print", "pkg-sdown", "dlog"}));
    EXPECT_EQ(printed, Printed{});

    EXPECT_FALSE(fs::exists("/tmp/korvel"));
    EXPECT_EQ(filesBelow(packageFolder), std::vector<std::string>{});
}

TEST_F(CollectorMgrRequestTest, CreatesAShutdownPackageThatIsEnabled) {
    const BoardCommand gathering("fp_linux_log_collect", "");
    Configuration::setCollectLogsOnExit();

    EXPECT_TRUE(request({"pkg-sdown", "dlog"}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(filesBelow(packageFolder), std::vector<std::string>{"netfp_logs_shutdown.tgz"});
}
