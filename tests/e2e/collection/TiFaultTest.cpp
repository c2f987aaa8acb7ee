#include <filesystem>

#include <sys/stat.h>
#include <sys/wait.h>

#include "CollectionFixture.hpp"
#include "GrowingLog.hpp"
#include "NetfpState.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;
using Boardsim::netfpProxyState;

namespace {

/// How the TI collector handles processes with faulty dumps.
class TiCollectionTest : public CollectionFixture {
protected:
    static constexpr const char* source = "/tmp/netfp_proxy.log";
    static constexpr const char* killed = "Error while sending 'kill -10' signal to netfp_proxy [pid:";

    std::string pidOf(const std::string& process) const { return std::to_string(board().pid(process)); }

    /// The verbose lines about a process before its dump.
    static std::string verboseDump(const std::string& process, const std::string& pid) {
        return "Sending 'kill -10' signal to " + process + " [pid:" + pid + "]...\nDumping " + process +
               " to /tmp/korvel/ti/" + process + ".log... \n";
    }

    /// The first lines of a verbose run that collects only dumps.
    static std::string tiStart() {
        return verboseStart("", {"fuse", "mmi"}) + "Starting log collection from TI...\n";
    }

    /// Prints the proxy's dump. `text` is the part that the process wrote before the time-out.
    static void expectIncomplete(const std::string& text) {
        EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", text + incompleteNote)));
        EXPECT_FALSE(fs::exists(source));
    }

    /// A text of `size` characters with the last line of a dump.
    static std::string dumpOfSize(std::size_t size) {
        const std::string end = "</netfp_proxy_dump>";
        return std::string(size - end.size(), '.') + end;
    }
};

TEST_F(TiCollectionTest, AMissingDumpIsNotedAsIncomplete) {
    startBoardWithFaults({"netfp_proxy=silent"});
    expectIncomplete("");
    EXPECT_EQ(Board::received("netfp_proxy"), Words{"SIGUSR1"});
}

TEST_F(TiCollectionTest, ADumpThatTakesTooLongIsNotedAsIncomplete) {
    startBoardWithFaults({"netfp_proxy=slow:60000"});
    expectIncomplete("");
}

TEST_F(TiCollectionTest, WaitsForASlowDump) {
    startBoardWithFaults({"netfp_proxy=slow:60"});
    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", dumpText("netfp_proxy"))));
}

TEST_F(TiCollectionTest, TheTextOfADyingProcessIsKept) {
    startBoardWithFaults({"netfp_proxy=dying"});

    const Outcome outcome = collect({"dump", "proxy"});

    EXPECT_EQ(outcome, success());
    const Files files = workFiles();
    const std::string written = files.at("ti/netfp_proxy.log");
    EXPECT_EQ(files, (Files{{"ti/netfp_proxy.log", written}}));
    EXPECT_EQ(written, dumpText("netfp_proxy").substr(0, written.size()));
    EXPECT_LT(written.size(), dumpText("netfp_proxy").size() - std::string("</netfp_proxy_dump>\n").size());
}

TEST_F(TiCollectionTest, ADumpWithoutItsLastLineIsKeptAndNotedAsIncomplete) {
    startBoardWithFaults({"netfp_proxy=unended"});
    expectIncomplete("<netfp_proxy_dump>\n" + netfpProxyState());
}

TEST_F(TiCollectionTest, TheNoteOnAnIncompleteDumpIsForTheConsoleOnly) {
    startBoardWithFaults({"netfp_proxy=unended"});

    const Outcome outcome = collect({"dump", "proxy"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), (Files{{"ti/netfp_proxy.log", "<netfp_proxy_dump>\n" + netfpProxyState()}}));
}

TEST_F(TiCollectionTest, AShortDumpIsIncompleteEvenWithItsLastLine) {
    startBoardWithFaults({"netfp_proxy=short"});
    expectIncomplete("<netfp_proxy_dump>\n</netfp_proxy_dump>\n");
}

TEST_F(TiCollectionTest, ADumpOfSixtyThreeCharactersIsIncompleteAndOneOfSixtyFourIsNot) {
    startBoardWithFaults({"netfp_proxy=silent"});

    writeFile(source, dumpOfSize(63));
    expectIncomplete(dumpOfSize(63));

    writeFile(source, dumpOfSize(64));
    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", dumpOfSize(64))));
}

TEST_F(TiCollectionTest, TextAfterTheLastLineDoesNotMakeADumpIncomplete) {
    startBoardWithFaults({"netfp_proxy=silent"});
    writeFile(source, dumpOfSize(80) + "\nand more\n");

    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", dumpOfSize(80) + "\nand more\n")));
}

TEST_F(TiCollectionTest, TheLastLineOfAnotherProcessEndsNoDump) {
    startBoardWithFaults({"netfp_proxy=silent"});
    const std::string foreign = std::string(80, '.') + "</netfp_server_dump>\n";
    writeFile(source, foreign);
    expectIncomplete(foreign);
}

TEST_F(TiCollectionTest, AMissingDumpDoesNotAffectTheOthers) {
    startBoardWithFaults({"netfp_server=silent"});

    const Outcome outcome = collect({"dump", "proxy", "server", "master", "resmgr"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy", "netfp_master", "resmgr_server"}));
}

TEST_F(TiCollectionTest, AProcessThatDoesNotRunIsSkippedAndStillHasItsHeader) {
    startBoardWithout({"netfp_proxy"});

    const Outcome outcome = collect({"-v", "print", "proxy", "server"});

    EXPECT_EQ(outcome,
              success(tiStart() +
                      "Sending 'kill -10' signal to netfp_proxy [pid:0]...\n"
                      "Invalid pid for netfp_proxy [pid:0], process may not be "
                      "running, skipping\n" +
                      verboseDump("netfp_server", pidOf("netfp_server")) + section("netfp_proxy", "") +
                      section("netfp_server", dumpText("netfp_server"))));
}

TEST_F(TiCollectionTest, TheDumpOfASkippedProcessStays) {
    startBoardWithout({"netfp_proxy"});
    writeFile(source, "an older dump");

    const Outcome outcome = collect({"dump", "proxy"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), Files{});
    EXPECT_EQ(contentOfFile(source), "an older dump");
}

TEST_F(TiCollectionTest, OfSeveralProcessesOfOneNameTheLastInTheListIsSignalled) {
    startBoard();
    const Process second({"bash", "-c", "exec -a netfp_proxy sleep 600"});
    while (contentOfFile("/proc/" + std::to_string(second.pid()) + "/cmdline").find("netfp_proxy") != 0) {
    }

    const Outcome outcome = collect({"-v", "print", "proxy"});

    EXPECT_EQ(outcome, success(tiStart() + verboseDump("netfp_proxy", std::to_string(second.pid())) +
                               section("netfp_proxy", incompleteNote)));
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(TiCollectionTest, AFifoInPlaceOfADumpIsReportedAndStays) {
    startBoardWithFaults({"netfp_proxy=silent"});
    ASSERT_EQ(::mkfifo(source, 0600), 0);

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", incompleteNote),
                               "Error while reading /tmp/netfp_proxy.log: No such device or address\n"));
    EXPECT_TRUE(fs::is_fifo(source));
}

TEST_F(TiCollectionTest, ALinkInPlaceOfADumpIsFollowedAndOnlyTheLinkIsRemoved) {
    startBoard();
    writeFile("/tmp/elsewhere/dump", "");
    fs::create_symlink("/tmp/elsewhere/dump", source);

    const Outcome outcome = collect({"dump", "proxy"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
    EXPECT_FALSE(fs::is_symlink(source));
    EXPECT_EQ(contentOfFile("/tmp/elsewhere/dump"), dumpText("netfp_proxy"));
}

TEST_F(TiCollectionTest, TheDumpIsRemovedFromItsPlace) {
    startBoard();

    collect({"dump", "netfp"});

    for (const std::string& process : netfpProcesses) {
        SCOPED_TRACE(process);
        EXPECT_FALSE(fs::exists("/tmp/" + process + ".log"));
    }
}

TEST_F(TiCollectionTest, ADumpThatCannotBeCopiedIsReportedAndStays) {
    startBoard();
    fs::create_directories("/tmp/korvel/ti/netfp_proxy.log");

    const Outcome outcome = collect({"dump", "proxy", "server"});

    EXPECT_EQ(outcome, success("", "Error while writing /tmp/korvel/ti/netfp_proxy.log: Is a directory\n"));
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_server"}));
    EXPECT_EQ(contentOfFile(source), dumpText("netfp_proxy"));
    EXPECT_FALSE(fs::exists("/tmp/netfp_server.log"));
}

TEST_F(TiCollectionTest, AProcessThatEndsAfterTheLookUpIsReported) {
    startBoardWithFaults({"iwf_dispatcher=silent"});
    const std::unique_ptr<Process> run = startCollection({"-d", "iwf", "dump", "dinf", "proxy"});
    awaitRequestTo("iwf_dispatcher");  // korvel has found all processes by then

    const pid_t proxy = board().pid("netfp_proxy");
    ::kill(proxy, SIGKILL);
    ::waitpid(proxy, nullptr, 0);

    EXPECT_EQ(run->wait(), success("", lines(1, timedOut) + killed + std::to_string(proxy) +
                                           "], errno: No such process\n"));
}

TEST_F(TiCollectionTest, AnExistingDumpIsCollectedEvenIfTheSignalFails) {
    startBoard();
    writeFile(source, dumpText("netfp_proxy"));

    const Outcome outcome = collectInjected({{"kill:error=EPERM"}}, {"dump", "proxy"});

    EXPECT_EQ(outcome, success("", killed + pidOf("netfp_proxy") + "], errno: Operation not permitted\n"));
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

}  // namespace
