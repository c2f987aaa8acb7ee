#include <filesystem>

#include <sys/stat.h>

#include "CollectionFixture.hpp"
#include "FullDisk.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Obstacles at the paths of dump files.
class DumpFileTest : public CollectionFixture {
protected:
    static constexpr const char* infoFile = "/tmp/korvel/mmi/iwf/SocketSvcInfo.log";

    const Words request{"-d", "iwf", "print", "dump", "dinf"};

    static std::string printedInfo() {
        return printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands);
    }

    static std::string unwritten(const std::string& file) {
        return "Error while writing /tmp/korvel/" + file + ": No space left on device\n";
    }

    /// The error of the shell runner if mkdir fails because `path` is a file.
    static std::string unmade(const std::string& directory, const std::string& path, const char* reason) {
        return "mkdir: cannot create directory '" + path + "': " + reason + "\nCommand: mkdir -p " +
               directory + " exited with error, exit code: 1\n";
    }
};

TEST_F(DumpFileTest, AnEarlierDumpIsReplacedCompletelyAndOtherFilesStay) {
    startBoard();
    writeFile(infoFile, std::string(100'000, 'x'));
    writeFile("/tmp/korvel/notes.txt", "notes");

    const Outcome outcome = collect(request);

    EXPECT_EQ(outcome, success(printedInfo()));
    EXPECT_EQ(
        workFiles(),
        together({stateFiles("iwf", infoStates), replyFiles("iwf", infoCommands), {{"notes.txt", "notes"}}}));
}

TEST_F(DumpFileTest, ALinkOfTheSameUserIsFollowed) {
    startBoard();
    fs::create_directories("/tmp/korvel/mmi/iwf");
    writeFile("/tmp/elsewhere", "an earlier text that is longer than nothing");
    fs::create_symlink("/tmp/elsewhere", infoFile);

    const Outcome outcome = collect(request);

    EXPECT_EQ(outcome, success(printedInfo()));
    EXPECT_TRUE(fs::is_symlink(infoFile));
    EXPECT_EQ(contentOfFile("/tmp/elsewhere"), replyFiles("iwf", infoCommands).begin()->second);
}

TEST_F(DumpFileTest, AFifoInPlaceOfAFileIsReportedAndNotWaitedFor) {
    startBoard();
    fs::create_directories("/tmp/korvel/mmi/iwf");
    ASSERT_EQ(::mkfifo(infoFile, 0600), 0);

    const Outcome outcome = collect(request);

    EXPECT_EQ(outcome, success(printedInfo(), "Error while opening /tmp/korvel/mmi/iwf/SocketSvcInfo.log\n"));
    EXPECT_EQ(workFiles(), stateFiles("iwf", infoStates));
}

TEST_F(DumpFileTest, ADirectoryInPlaceOfAFileIsReportedByEveryCollector) {
    startBoard();
    for (const std::string file : {"fuse/iwf/tracing_on", "mmi/iwf/SocketSvcInfo", "ti/syslib_sm_log"}) {
        fs::create_directories("/tmp/korvel/" + file + ".log");
    }

    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf", "slog", "server"});

    EXPECT_EQ(outcome, success("",
                               "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n"
                               "Error while opening /tmp/korvel/mmi/iwf/SocketSvcInfo.log\n"
                               "Error while opening /tmp/korvel/ti/syslib_sm_log.log\n"));
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_server"}));
}

TEST_F(DumpFileTest, AWriteThatFailsIsReportedOnceAndEverythingElseIsWrittenAndPrinted) {
    startBoard();

    const Outcome outcome = collectInjected({.faults = {"write:error=ENOSPC"}, .path = infoFile}, request);

    EXPECT_EQ(outcome, success(printedInfo(), unwritten("mmi/iwf/SocketSvcInfo.log")));
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", infoStates), emptyReplyFiles("iwf", infoCommands)}));
}

TEST_F(DumpFileTest, AFailedCloseIsReportedAsAFailedWrite) {
    startBoard();

    const Outcome outcome = collectInjected({.faults = {"close:error=ENOSPC"}, .path = infoFile}, request);

    EXPECT_EQ(outcome, success(printedInfo(), unwritten("mmi/iwf/SocketSvcInfo.log")));
}

TEST_F(DumpFileTest, AFailedTruncationIsReportedAsAFailedOpen) {
    startBoard();

    const Outcome outcome = collectInjected({.faults = {"ftruncate:error=EIO"}, .path = infoFile}, request);

    EXPECT_EQ(outcome, success(printedInfo(), "Error while opening /tmp/korvel/mmi/iwf/SocketSvcInfo.log\n"));
}

TEST_F(DumpFileTest, AFailedCopyOfADumpIsReportedOnceForAllItsTries) {
    startBoard();

    const Outcome outcome =
        collectInjected({.faults = {"write:error=ENOSPC"}, .path = "/tmp/korvel/ti/netfp_proxy.log"},
                        {"dump", "proxy", "server"});

    EXPECT_EQ(outcome, success("", unwritten("ti/netfp_proxy.log")));
    EXPECT_EQ(workFiles(), together({{{"ti/netfp_proxy.log", ""}}, dumpFiles({"netfp_server"})}));
}

TEST_F(DumpFileTest, OnAFullDiskEveryFileIsReportedAndEverythingIsPrinted) {
    startBoard();
    const FullDisk disk("/tmp");

    const Outcome outcome = collect({"-d", "iwf", "print", "dump", "dinf", "dstat"});

    EXPECT_EQ(outcome,
              success(printedStates("iwf", allStates) + printedReplies("iwf", allCommands),
                      unwritten("fuse/iwf/tracing_on.log") + unwritten("fuse/iwf/dispatcherCpu.log") +
                          unwritten("fuse/iwf/dmaStats.log") + unwritten("mmi/iwf/SocketSvcInfo.log") +
                          unwritten("mmi/iwf/SocketSvcCounters.log") +
                          unwritten("mmi/iwf/ReassemblyCounters.log") + unwritten("mmi/iwf/HeapStats.log")));
    EXPECT_EQ(workFiles(), together({emptyReplyFiles("iwf", allCommands),
                                     {{"fuse/iwf/tracing_on.log", ""},
                                      {"fuse/iwf/dispatcherCpu.log", ""},
                                      {"fuse/iwf/dmaStats.log", ""}}}));
}

TEST_F(DumpFileTest, OnAFullDiskTheProcessesCannotBeListed) {
    startBoard();
    const FullDisk disk("/tmp");

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", ""),
                               "grep: write error: No space left on device\nCommand: " +
                                   std::string(listing) + " exited with error, exit code: 2\n"));
}

TEST_F(DumpFileTest, AWorkDirectoryThatCannotBeCreatedIsReportedAndEverythingIsPrinted) {
    startBoard();
    writeFile(workDir, "a file");

    const Outcome outcome = collect(request);

    const auto refused = [](const std::string& directory) {
        return unmade(directory, "/tmp/korvel", "Not a directory");
    };
    EXPECT_EQ(outcome,
              success(printedInfo(), refused("/tmp/korvel/fuse") + refused("/tmp/korvel/mmi") +
                                         refused("/tmp/korvel/fuse/iwf/") +
                                         "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n" +
                                         refused("/tmp/korvel/mmi/iwf/") +
                                         "Error while creating directory: /tmp/korvel/mmi/iwf/\n"));
    EXPECT_EQ(contentOfFile(workDir), "a file");
}

TEST_F(DumpFileTest, AnInstanceWithoutADirectoryDoesNotAffectTheNext) {
    startBoard();
    writeFile("/tmp/korvel/mmi/iwf", "a file");

    const Outcome outcome = collect({"-d", "all", "dump", "dinf"});

    EXPECT_EQ(outcome, success("", unmade("/tmp/korvel/mmi/iwf/", "/tmp/korvel/mmi/iwf/", "File exists") +
                                       "Error while creating directory: /tmp/korvel/mmi/iwf/\n"));
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", infoStates),
                                     stateFiles("sfn", infoStates),
                                     replyFiles("sfn", infoCommands),
                                     {{"mmi/iwf", "a file"}}}));
}

}  // namespace
