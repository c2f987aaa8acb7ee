// File systems that do not answer, as if the dispatcher that serves them hangs. Each one is a real file
// system. A request that its server has read but not answered blocks its sender, and signals do not interrupt
// it.

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "CollectionFixture.hpp"
#include "Gate.hpp"
#include "RunningProcesses.hpp"
#include "StuckFolder.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Deployment;

namespace {

class HangingFileTest : public CollectionFixture {
protected:
    static constexpr const char* iwfStates = "/tmp/fuse/iwf";
    static constexpr const char* hungState =
        "Error while reading /tmp/fuse/iwf/tracing_on: Connection timed out\n";
    static constexpr const char* emptyState = "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n";
    static constexpr const char* hungDump =
        "Error while reading /tmp/netfp_proxy.log: Connection timed out\n";

    static inline const Words information{"-d", "all", "dump", "dinf"};

    /// The files that it collects on a board that answers everything. Cannot be used once a state hangs.
    static Files informationOfAll() {
        return together({informationBut("iwf"), stateFiles("iwf", infoStates)});
    }

    /// The same except the states of an instance.
    static Files informationBut(const std::string& instance) {
        const std::string other = instance == "iwf" ? "sfn" : "iwf";
        return together({stateFiles(other, infoStates), replyFiles("iwf", infoCommands),
                         replyFiles("sfn", infoCommands)});
    }

    /// The text that korvel writes to a pipe until all writers have closed it, and how it ended.
    static std::string textInPipe(const Words& arguments) {
        Words command{"sh", "-c", "{ LC_ALL=C korvel \"$@\" 2>&1; echo \"exit status $?\"; } | cat", "sh"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return run(command).out;
    }

    static std::string ended(const std::string& text) { return text + "exit status 0\n"; }

    /// Waits until korvel has that many processes left.
    static std::vector<pid_t> awaitLeft(std::size_t count) {
        for (;;) {
            std::vector<pid_t> left = processesNamed("korvel");
            if (left.size() == count) {
                return left;
            }
            pause();
        }
    }

    /// One helper is blocked uninterruptibly. Its only descriptor is of the file that it reads.
    static void expectOneHelperLeftBehind(const std::string& folder) {
        for (const std::string& target : descriptorsOf(awaitLeft(1).front())) {
            EXPECT_TRUE(folder.starts_with(target) || target.starts_with(folder)) << target;
        }
    }

    /// A run that is blocked before it reads the first state.
    static std::unique_ptr<Process> startAtGate() {
        writeFile("/tmp/configuration", "");
        fs::create_symlink("/tmp/configuration", "/rom/private/fpdispatcher.conf");
        std::unique_ptr<Process> run =
            startCollection(information, withCommand("mkdir", Gate::script() + "exec /bin/mkdir \"$@\"\n"));
        Gate::await();
        return run;
    }

    /// The process that reads files for the run. Waits for one other than `earlier`.
    static pid_t helperOf(const Process& run, pid_t earlier = 0) {
        for (;;) {
            for (const pid_t helper : childrenNamed("korvel", run.pid())) {
                if (helper != earlier) {
                    return helper;
                }
            }
            pause();
        }
    }

    /// Returns after a verbose run has waited for a while for IWF's state.
    static void awaitLook(const Process& run) {
        while (!run.outSoFar().ends_with("Reading /tmp/fuse/iwf/tracing_on...\n")) {
            pause();
        }
    }

private:
    static void pause() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }
};

/// A kind of request without an answer, and the text of IWF's state that korvel still reads.
struct Unanswered {
    const char* operation;
    bool costsTheText;
    bool isReported;
};

std::ostream& operator<<(std::ostream& stream, const Unanswered& unanswered) {
    return stream << unanswered.operation;
}

class UnansweredRequestTest : public HangingFileTest, public testing::WithParamInterface<Unanswered> {};

INSTANTIATE_TEST_SUITE_P(OfEachKind, UnansweredRequestTest,
                         testing::Values(Unanswered{"LOOKUP", true, true}, Unanswered{"GETATTR", true, true},
                                         Unanswered{"READLINK", true, true}, Unanswered{"OPEN", true, true},
                                         Unanswered{"READ", true, true}, Unanswered{"FLUSH", false, true},
                                         Unanswered{"RELEASE", false, false}),
                         [](const auto& test) { return std::string(test.param.operation); });

TEST_P(UnansweredRequestTest, LosesOneStateFileAndTheRunEnds) {
    startBoard();
    const Files expected = GetParam().costsTheText ? informationBut("iwf") : informationOfAll();
    fs::rename("/tmp/fuse/iwf/tracing_on", "/tmp/fuse/iwf/tracing");
    fs::create_symlink("tracing", "/tmp/fuse/iwf/tracing_on");
    StuckFolder states(iwfStates, GetParam().operation);

    const std::string text = textInPipe(information);

    EXPECT_EQ(text, ended((GetParam().isReported ? hungState : std::string()) +
                          (GetParam().costsTheText ? emptyState : "")));
    EXPECT_EQ(workFiles(), expected);
    if (GetParam().isReported) {
        expectOneHelperLeftBehind(iwfStates);
    }
    states.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, AServerThatReadsNoRequestLeavesNoHelperBehind) {
    startBoard();
    const Files expected = informationBut("iwf");
    const StuckFolder states(iwfStates, "NONE");
    states.stop();

    const std::string text = textInPipe(information);

    EXPECT_EQ(text, ended(hungState + std::string(emptyState)));
    EXPECT_EQ(workFiles(), expected);
    awaitLeft(0);
}

TEST_F(HangingFileTest, ATreeThatHangsCountsAsNone) {
    startBoard();
    const Files expected = together({stateFiles("iwf", {"dispatcherCpu", "dmaStats", "fpBridgeStats"}),
                                     replyFiles("iwf", statsCommands)});
    StuckFolder tree("/tmp/fuse/sfn", "GETATTR");

    const std::string text = textInPipe({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(text, ended("Error while reading /tmp/fuse/sfn/: Connection timed out\n"));
    EXPECT_EQ(workFiles(), expected);
    tree.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, ADumpWhoseLookUpHangsIsReportedAndStays) {
    startBoardWithFaults({"netfp_proxy=silent"});
    writeFile("/tmp/elsewhere/dump", "an earlier dump");
    fs::create_symlink("/tmp/elsewhere/dump", "/tmp/netfp_proxy.log");
    StuckFolder elsewhere("/tmp/elsewhere", "LOOKUP");

    const std::string text = textInPipe({"dump", "proxy", "server"});

    EXPECT_EQ(text, ended(hungDump));
    EXPECT_EQ(workFiles(), dumpFiles({"netfp_server"}));
    EXPECT_TRUE(fs::is_symlink("/tmp/netfp_proxy.log"));
    expectOneHelperLeftBehind("/tmp/elsewhere");
    elsewhere.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, ADumpWhoseReadHangsIsReportedAndStays) {
    startBoardWithFaults({"netfp_proxy=silent"});
    writeFile("/tmp/elsewhere/dump", "an earlier dump");
    fs::create_symlink("/tmp/elsewhere/dump", "/tmp/netfp_proxy.log");
    StuckFolder elsewhere("/tmp/elsewhere", "READ");

    const std::string text = textInPipe({"print", "proxy"});

    EXPECT_EQ(text, ended(hungDump + section("netfp_proxy", incompleteNote)));
    EXPECT_TRUE(fs::is_symlink("/tmp/netfp_proxy.log"));
    elsewhere.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, DeploymentFilesThatHangLeaveTheirDefaults) {
    startBoard();
    StuckFolder rom("/rom/private", "LOOKUP");

    const std::string text = textInPipe({"getport", "4"});

    EXPECT_EQ(text, ended("Error while reading /rom/private/fpdispatcher.conf: Connection timed out\n"
                          "Error while reading /rom/private/is_ant: Connection timed out\n"
                          "Error while reading /rom/private/is_master: Connection timed out\n"
                          "4\n"));
    rom.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, AFlagFileThatCannotBeCheckedCountsAsNone) {
    startBoard();
    StuckFolder rom("/rom/private", "ACCESS");

    const std::string text = textInPipe({"getport", "4"});

    EXPECT_EQ(text, ended("Error while reading /rom/private/is_master: Connection timed out\n4\n"));
    rom.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, ADeploymentTypeThatCannotBeReadCountsAsNone) {
    startBoard({.deployment = Deployment::iwf});
    StuckFolder rom("/rom/config", "READ");

    const std::string text = textInPipe({"getport", "4"});

    EXPECT_EQ(text, ended("Error while reading /rom/config/deployment_type: Connection timed out\n4\n"));
    rom.end();
    awaitLeft(0);
}

TEST_F(HangingFileTest, AHelperThatIsKilledDuringARequestIsReplacedWithoutLoss) {
    startBoard();
    const Files expected = informationOfAll();
    const StuckFolder states(iwfStates, "NONE");
    states.stop();
    const std::unique_ptr<Process> run = startCollection({"-v", "-d", "all", "dump", "dinf"});
    awaitLook(*run);

    const pid_t helper = helperOf(*run);
    ::kill(helper, SIGKILL);
    helperOf(*run, helper);
    states.resume();

    const Outcome outcome = run->wait();
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(workFiles(), expected);
}

TEST_F(HangingFileTest, AHelperThatIsKilledRepeatedlyLosesOnlyTheFile) {
    startBoard();
    const Files expected = informationBut("iwf");
    const StuckFolder states(iwfStates, "NONE");
    states.stop();
    const std::unique_ptr<Process> run = startCollection({"-v", "-d", "all", "dump", "dinf"});
    awaitLook(*run);

    const pid_t first = helperOf(*run);
    ::kill(first, SIGKILL);
    ::kill(helperOf(*run, first), SIGKILL);

    const Outcome outcome = run->wait();
    EXPECT_EQ(outcome.err, "Error while opening /tmp/fuse/iwf/tracing_on\n" + std::string(emptyState));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(workFiles(), expected);
}

TEST_F(HangingFileTest, AHelperThatIsKilledBetweenTwoRequestsIsReplaced) {
    startBoard();
    const std::unique_ptr<Process> run = startAtGate();

    ::kill(helperOf(*run), SIGKILL);
    Gate::open();

    EXPECT_EQ(run->wait(), success());
    EXPECT_EQ(workFiles(), informationOfAll());
}

TEST_F(HangingFileTest, AHelperThatIsStoppedLosesOneFile) {
    startBoard();
    const std::unique_ptr<Process> run = startAtGate();

    ::kill(helperOf(*run), SIGSTOP);
    Gate::open();

    EXPECT_EQ(run->wait(), success("", hungState + std::string(emptyState)));
    EXPECT_EQ(workFiles(), informationBut("iwf"));
    awaitLeft(0);
}

}  // namespace
