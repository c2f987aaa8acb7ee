#include <chrono>
#include <csignal>

#include "Gate.hpp"
#include "PackageFixture.hpp"
#include "Pestering.hpp"
#include "TestFiles.hpp"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Signals that arrive while logs are collected and packed.
class CollectionSignalTest : public PackageFixture {
protected:
    static constexpr int terminated = 128 + SIGTERM;

    /// An IWF dispatcher and a proxy that answer nothing, so every wait lasts its full time.
    void startSilentBoard() { startBoardWithFaults({"iwf_dispatcher=silent", "netfp_proxy=silent"}); }

    /// The sum of the waits for them: four replies, one dump.
    static constexpr auto wholeSilence = 4 * 500ms + 1000ms;

    const Words silentRequest{"-d", "iwf", "dump", "dinf", "dstat", "proxy"};

    static Files silentFiles() {
        return together({stateFiles("iwf", allStates), emptyReplyFiles("iwf", allCommands)});
    }

    /// The first command of a run, and each command of the same name, waits at the gate.
    static Surroundings withSlowDirectories() {
        return withCommand("mkdir", Gate::script() + "exec /bin/mkdir \"$@\"\n");
    }

    /// The request with an additional package.
    Words packedRequest() const {
        Words request = silentRequest;
        request.emplace_back("pkg-pm");
        return request;
    }
};

TEST_F(CollectionSignalTest, SigtermEndsNoWaitWhilePackagedLogsAreCollected) {
    startSilentBoard();
    const Clock::time_point start = Clock::now();
    const Surroundings quick = withCommand("fp_linux_log_collect", "");
    const std::unique_ptr<Process> run = startCollection(packedRequest(), quick);
    awaitRequestTo("iwf_dispatcher");  // the handler is in place by then

    const Outcome outcome = pester(*run, {SIGTERM});

    EXPECT_EQ(outcome, success("", lines(4, timedOut)));
    EXPECT_GE(Clock::now() - start, wholeSilence);
    EXPECT_EQ(workFiles(), silentFiles());
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), silentFiles());
}

TEST_F(CollectionSignalTest, SigtermSpoilsNoReplyWhilePackagedLogsAreCollected) {
    startBoardWithFaults({"iwf_dispatcher=slow:50", "netfp_proxy=slow:20"});
    const Surroundings quick = withCommand("fp_linux_log_collect", "");
    const std::unique_ptr<Process> run = startCollection(packedRequest(), quick);
    awaitRequestTo("iwf_dispatcher");

    const Outcome outcome = pester(*run, {SIGTERM});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(
        filesIn(package("_post_mortem.tgz")),
        together({stateFiles("iwf", allStates), replyFiles("iwf", allCommands), dumpFiles({"netfp_proxy"})}));
}

TEST_F(CollectionSignalTest, SigtermDoesNotEndTheRunWhileLinuxLogsAreGathered) {
    startBoard();
    const Surroundings slow =
        withCommand("fp_linux_log_collect", Gate::script() + "echo gathered > \"$1/gathered\"\n");
    const std::unique_ptr<Process> run = startCollection({"-d", "iwf", "pkg-pm", "dinf"}, slow);
    Gate::await();

    for (int i = 0; i < 10; ++i) {
        ::kill(run->pid(), SIGTERM);
    }
    Gate::open();

    EXPECT_EQ(pester(*run, {SIGTERM}), success());
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), together({stateFiles("iwf", infoStates),
                                                              replyFiles("iwf", infoCommands),
                                                              {{"gathered", "gathered\n"}}}));
}

TEST_F(CollectionSignalTest, SigtermDoesNotEndTheRunWhileThePackageIsWritten) {
    startBoard();
    const Surroundings slow = withCommand("gzip", Gate::script() + "exec /bin/gzip \"$@\"\n");
    const std::unique_ptr<Process> run = startCollection({"-d", "iwf", "print", "pkg-pm", "dinf"}, slow);
    Gate::await();

    for (int i = 0; i < 10; ++i) {
        ::kill(run->pid(), SIGTERM);
    }
    Gate::open();

    EXPECT_EQ(pester(*run, {SIGTERM}),
              success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands)));
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), workFiles());
}

TEST_F(CollectionSignalTest, SigtermDoesNotEndTheRunBeforeItsFirstCommandHasEnded) {
    startBoard();
    const std::unique_ptr<Process> run =
        startCollection({"-d", "iwf", "pkg-sdown", "dinf"}, withSlowDirectories());
    Gate::await();

    ::kill(run->pid(), SIGTERM);
    Gate::open();

    EXPECT_EQ(run->wait(), success());
    EXPECT_EQ(filesIn(package("_shutdown.tgz")), workFiles());
}

TEST_F(CollectionSignalTest, SigtermEndsARunWithoutAPackage) {
    startBoard();
    const std::unique_ptr<Process> run =
        startCollection({"-d", "iwf", "print", "dump", "dinf"}, withSlowDirectories());
    Gate::await();

    ::kill(run->pid(), SIGTERM);

    EXPECT_EQ(run->wait(), (Outcome{terminated, "", ""}));
    Gate::open();
}

TEST_F(CollectionSignalTest, ChildProcessesDoNotIgnoreSigterm) {
    startBoard();
    Surroundings surroundings = withCommand("fp_linux_log_collect", "kill -TERM $$\necho survived\n");
    const Outcome expected = success("", gathering + std::string("exited with error, exit code: 143\n"));

    EXPECT_EQ(collect({"-d", "iwf", "pkg-pm", "dinf"}, surroundings), expected);

    surroundings.ignoredSignals = {SIGTERM};
    EXPECT_EQ(collect({"-d", "iwf", "pkg-pm", "dinf"}, surroundings), expected);
}

TEST_F(CollectionSignalTest, OtherSignalsEndNoWaitAndChangeNothing) {
    startSilentBoard();
    const Clock::time_point start = Clock::now();
    const std::unique_ptr<Process> run = startCollection(silentRequest);

    const Outcome outcome = pester(*run, {SIGWINCH, SIGCONT, SIGSTOP, SIGCONT, SIGCHLD});

    EXPECT_EQ(outcome, success("", lines(4, timedOut)));
    EXPECT_GE(Clock::now() - start, wholeSilence);
    EXPECT_EQ(workFiles(), silentFiles());
}

TEST_F(CollectionSignalTest, OtherSignalsSpoilNoReplyAndNoDump) {
    startBoardWithFaults({"iwf_dispatcher=slow:50", "netfp_proxy=slow:20"});
    const std::unique_ptr<Process> run = startCollection(silentRequest);

    const Outcome outcome = pester(*run, {SIGWINCH, SIGCONT, SIGURG});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", allStates), replyFiles("iwf", allCommands),
                                     dumpFiles({"netfp_proxy"})}));
}

}  // namespace
