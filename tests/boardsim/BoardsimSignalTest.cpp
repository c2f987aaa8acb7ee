#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Boardsim.hpp"
#include "Terminal.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// A word in the command lines of the test's processes that identifies them.
std::string mark() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test->name()) + "." + std::to_string(::getpid());
}

/// True while a running process has mark() in its command line.
bool markedProcessRuns() {
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "cmdline");
        std::string line;
        std::getline(file, line);  // reads nothing if the process has just ended
        if (line.find(mark()) != std::string::npos) {
            return true;
        }
    }
    return false;
}

/// Waits for an event that must occur. The test's time-out ends the wait otherwise.
template <typename Condition>
void waitUntil(Condition condition) {
    while (!condition()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

/// A board whose command has written "ready".
class RunningBoard {
public:
    explicit RunningBoard(const std::string& script)
        : process(boardsimCommand({"--bare", "--", "bash", "-c", script, mark()})) {
        waitUntil([&] { return process.outSoFar() == "ready\n"; });
    }

    Outcome endAfter(int signal) { return endAfter(signal, process.pid()); }

    /// Sends the signal to bubblewrap, the only child.
    Outcome endAfterBwrapGets(int signal) {
        const std::string id = std::to_string(process.pid());
        return endAfter(signal, std::stoi(contentOfFile("/proc/" + id + "/task/" + id + "/children")));
    }

private:
    Outcome endAfter(int signal, pid_t receiver) {
        ::kill(receiver, signal);
        return process.wait();
    }

    Process process;
};

constexpr const char* ctrlC = "\x03";

}  // namespace

TEST(BoardsimSignalTest, EndsEverythingAtASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        SCOPED_TRACE(signal);
        RunningBoard board("echo ready; exec -a $0 sleep 1000");
        ASSERT_TRUE(markedProcessRuns());

        EXPECT_EQ(board.endAfter(signal).status, 128 + signal);

        EXPECT_FALSE(markedProcessRuns());
    }
}

TEST(BoardsimSignalTest, LetsTheCommandHandleTheSignal) {
    RunningBoard board("trap 'echo handled; exit 5' TERM; echo ready; sleep 1000 & wait");

    const Outcome outcome = board.endAfter(SIGTERM);

    EXPECT_EQ(outcome.status, 5);
    EXPECT_EQ(outcome.out, "ready\nhandled\n");
}

TEST(BoardsimSignalTest, KillsACommandThatIgnoresTheSignal) {
    RunningBoard board("trap '' TERM; echo ready; while :; do sleep 1; done");

    EXPECT_EQ(board.endAfter(SIGTERM).status, 128 + SIGTERM);

    EXPECT_FALSE(markedProcessRuns());
}

TEST(BoardsimSignalTest, LeavesNothingBehindWhenItIsKilled) {
    RunningBoard board("echo ready; trap '' TERM HUP; while :; do sleep 1; done");

    EXPECT_EQ(board.endAfter(SIGKILL).status, 128 + SIGKILL);

    waitUntil([] { return !markedProcessRuns(); });
}

TEST(BoardsimSignalTest, EndsEverythingAtCtrlC) {
    Terminal terminal(boardsimCommand({"--", "bash", "-c", "echo ready; exec -a $0 sleep 1000", mark()}));
    terminal.expect("ready");

    terminal.type(ctrlC);

    EXPECT_EQ(terminal.wait(), 128 + SIGINT);
    EXPECT_FALSE(markedProcessRuns());
}

TEST(BoardsimSignalTest, LeavesNothingBehindWhenBubblewrapIsKilled) {
    RunningBoard board("echo ready; trap '' TERM HUP; while :; do sleep 1; done");

    EXPECT_EQ(board.endAfterBwrapGets(SIGKILL).status, 128 + SIGKILL);

    waitUntil([] { return !markedProcessRuns(); });
}

TEST(BoardsimSignalTest, EndsEverythingWhenTheTerminalHangsUp) {
    Terminal terminal(
        boardsimCommand({"--", "bash", "-c", "trap '' HUP; echo ready; exec -a $0 sleep 1000", mark()}));
    terminal.expect("ready");

    terminal.hangUp();

    EXPECT_EQ(terminal.wait(), 128 + SIGHUP);
    waitUntil([] { return !markedProcessRuns(); });
}

TEST(BoardsimSignalTest, EndsAShellAndItsJobsWhenTheTerminalHangsUp) {
    Terminal terminal(boardsimCommand({}));
    terminal.expect("board# ");
    terminal.type("(trap '' HUP; echo rea\"\"dy; exec -a " + mark() + " sleep 1000) &\n");
    terminal.expect("ready");

    terminal.hangUp();

    terminal.wait();
    waitUntil([] { return !markedProcessRuns(); });
}

TEST(BoardsimSignalTest, PassesCtrlCToAShellOnTheBoard) {
    Terminal terminal(boardsimCommand({}));
    terminal.expect("board# ");
    terminal.type("sh -c 'echo rea\"\"dy; exec sleep 1000'\n");
    terminal.expect("ready");

    terminal.type(ctrlC);

    terminal.expect("board# ");
    terminal.type("pidof netfp_master > /dev/null && exit 6\n");
    EXPECT_EQ(terminal.wait(), 6);
}

TEST(BoardsimSignalTest, GivesTheTerminalBack) {
    Terminal terminal({"bash", "-c", std::string(BOARDSIM_PROGRAM) + "; read word; echo \"got $word\""});
    terminal.expect("board# ");

    terminal.type("exit\n");
    terminal.type("it\n");

    terminal.expect("got it");
    EXPECT_EQ(terminal.wait(), 0);
}
