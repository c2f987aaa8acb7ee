#include <filesystem>

#include "CollectionFixture.hpp"
#include "GrowingLog.hpp"
#include "TestFiles.hpp"

namespace {

/// The whole output of a run.
class CollectionOutputTest : public CollectionFixture {
protected:
    static constexpr const char* dispatcherLog = "dispatcher_log_memory";
    static constexpr const char* syslibLog = "syslib_log_memory";

    /// The section of a process whose dump lost its directory.
    static std::string lostDump(const std::string& process) { return section(process, incompleteNote); }

    /// The TI collector's sections of a run that prints: all dumps except the first are lost.
    static std::string printedTi(const std::string& syslib) {
        return section("netfp_proxy", dumpText("netfp_proxy")) + lostDump("netfp_server") +
               lostDump("netfp_master") + lostDump("resmgr_server") + header("SYSLIB LOG") + syslib;
    }

    static std::string printedDispatchers(const std::string& history) {
        return printedStates("iwf", allStates) + printedStates("sfn", allStates) +
               section("NETFP LOG", history) + printedReplies("iwf", allCommands) +
               printedReplies("sfn", allCommands);
    }

    static std::string verboseInstance(const std::string& name, const std::string& port) {
        std::string text = "Starting log collection from MMI service in dispatcher instance " + name +
                           "...\nBinding to port: " + port + "\n";
        for (const std::string& command : allCommands) {
            text += "Sending MMI request: " + command + "\nResponse received successfully\n";
        }
        return text;
    }

    static std::string verboseFuse() {
        return "Starting log collection from fuse file system...\n"
               "Reading /tmp/fuse/iwf/tracing_on...\n"
               "Reading /tmp/fuse/iwf/dispatcherCpu...\n"
               "Reading /tmp/fuse/iwf/dmaStats...\n"
               "Reading /tmp/fuse/sfn/tracing_on...\n"
               "Reading /tmp/fuse/sfn/dispatcherCpu...\n"
               "Reading /tmp/fuse/sfn/dmaStats...\n"
               "Reading HistoryLog...\n";
    }

    std::string verboseDump(const std::string& process) const {
        return "Sending 'kill -10' signal to " + process + " [pid:" + std::to_string(board().pid(process)) +
               "]...\nDumping " + process + " to /tmp/korvel/ti/" + process + ".log... \n";
    }

    std::string verboseTi() const {
        return "Starting log collection from TI...\n" + verboseDump("netfp_proxy") +
               verboseDump("netfp_server") + verboseDump("netfp_master") + verboseDump("resmgr_server");
    }
};

TEST_F(CollectionOutputTest, PrintAlonePrintsEverythingAndWritesNoFile) {
    startBoard();
    const GrowingLog history(dispatcherLog);
    const GrowingLog syslib(syslibLog);

    const Outcome outcome = collect({"print"});

    EXPECT_EQ(outcome, success(printedDispatchers(history.versionIn(outcome.out)) +
                               printedTi(syslib.versionIn(outcome.out))));
    EXPECT_EQ(workFiles(), Files{});
}

TEST_F(CollectionOutputTest, TheDumpDirectoryIsRemovedBeforeItsDumpsArePrinted) {
    startBoard();

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", dumpText("netfp_proxy"))));
    EXPECT_TRUE(std::filesystem::is_directory(workDir));
    EXPECT_FALSE(std::filesystem::exists("/tmp/korvel/ti"));
}

TEST_F(CollectionOutputTest, AVerboseRunReportsEachStepAndEachFailureInOrder) {
    startBoard();
    const GrowingLog history(dispatcherLog);
    const GrowingLog syslib(syslibLog);

    const Outcome outcome = collect({"-v", "-d", "all", "all", "dump", "print"}, {.together = true});

    EXPECT_EQ(outcome, success(verboseStart("Communicating with both dispatchers\n", {}) + verboseFuse() +
                               verboseInstance("iwf", "7778") + verboseInstance("sfn", "8778") + verboseTi() +
                               "Error while opening /tmp/korvel/ti/syslib_sm_log.log\n" +
                               printedDispatchers(history.versionIn(outcome.out)) +
                               printedTi(syslib.versionIn(outcome.out))));
}

TEST_F(CollectionOutputTest, EveryDumpReachesItsFileIfNothingIsPrinted) {
    startBoard();
    const GrowingLog history(dispatcherLog);
    const GrowingLog syslib(syslibLog);

    const Outcome outcome = collect({"-v", "-d", "all", "dump"});

    EXPECT_EQ(outcome,
              success(verboseStart("Communicating with both dispatchers\n", {}) + verboseFuse() +
                      verboseInstance("iwf", "7778") + verboseInstance("sfn", "8778") + verboseTi()));
    const Files files = workFiles();
    EXPECT_EQ(files,
              together({stateFiles("iwf", allStates),
                        stateFiles("sfn", allStates),
                        replyFiles("iwf", allCommands),
                        replyFiles("sfn", allCommands),
                        dumpFiles(netfpProcesses),
                        {{"fuse/HistoryLog.log", history.versionIn(files.at("fuse/HistoryLog.log"))},
                         {"ti/syslib_sm_log.log", syslib.versionIn(files.at("ti/syslib_sm_log.log"))}}}));
}

TEST_F(CollectionOutputTest, TheDispatchersOfOneInstancePrintAsOneBlock) {
    startBoard();
    const GrowingLog history(dispatcherLog);

    const Outcome outcome = collect({"-d", "iwf", "print", "dall"});

    EXPECT_EQ(outcome,
              success(printedStates("iwf", allStates) + section("NETFP LOG", history.versionIn(outcome.out)) +
                      printedReplies("iwf", allCommands)));
}

TEST_F(CollectionOutputTest, VerboseModeNamesCollectorsThatHaveNothingToDo) {
    startBoard();

    const Outcome outcome = collect({"-v", "server", "print"});

    EXPECT_EQ(outcome,
              success(verboseStart("", {"fuse", "mmi"}) + "Starting log collection from TI...\n" +
                      verboseDump("netfp_server") + section("netfp_server", dumpText("netfp_server"))));
}

TEST_F(CollectionOutputTest, TheSyslibTextEndsTheOutputUnchanged) {
    startBoardWithout({"netfp_server"});
    const std::string text = GrowingLog(syslibLog).text();

    EXPECT_EQ(collect({"print", "slog"}), success(header("SYSLIB LOG") + text));
}

TEST_F(CollectionOutputTest, OfTheEmptyLogsOnlyTheSyslibLogHasAFile) {
    startBoardWithout({"netfp_server", "iwf_dispatcher", "sfn_dispatcher"});

    EXPECT_EQ(collect({"print", "slog", "dlog"}), success(section("NETFP LOG", "") + header("SYSLIB LOG")));
    EXPECT_EQ(collect({"dump", "slog", "dlog"}),
              success("", "Output of /tmp/korvel/fuse/HistoryLog.log is empty\n"));
    EXPECT_EQ(workFiles(), (Files{{"ti/syslib_sm_log.log", ""}}));
}

TEST_F(CollectionOutputTest, FullLogsAreCollectedCompletely) {
    startBoard({.without = {"netfp_server", "iwf_dispatcher", "sfn_dispatcher"}, .fullLogs = true});
    const std::string history = GrowingLog(dispatcherLog).text();
    const std::string syslib = GrowingLog(syslibLog).text();
    ASSERT_GT(history.size(), std::size_t{2'000'000});

    const Outcome outcome = collect({"dump", "dlog", "slog"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), (Files{{"fuse/HistoryLog.log", history}, {"ti/syslib_sm_log.log", syslib}}));
}

TEST_F(CollectionOutputTest, FilesAreDumpedAndPackedBeforeAnythingIsPrinted) {
    startBoard();

    const Outcome outcome =
        collect({"-v", "-d", "iwf", "print", "dump", "pkg-pm", "dinf"}, {.together = true});

    const std::string package = "/ffs/run/logs/netfp_logs_post_mortem.tgz";
    EXPECT_EQ(outcome, success(verboseStart("Communicating with iwf dispatcher\n", {"ti"}) +
                               "Starting log collection from fuse file system...\n"
                               "Reading /tmp/fuse/iwf/tracing_on...\n"
                               "Starting log collection from MMI service in dispatcher instance iwf...\n"
                               "Binding to port: 7778\n"
                               "Sending MMI request: SocketSvcInfo\n"
                               "Response received successfully\n"
                               "Creating " +
                               package + " package...\n" + run({"tar", "tzf", package}).out +
                               printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands)));
}

}  // namespace
