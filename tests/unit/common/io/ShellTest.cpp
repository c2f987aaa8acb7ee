#include <csignal>

#include <gtest/gtest.h>

#include "OutputCapture.hpp"
#include "Probe.hpp"
#include "Shell.hpp"
#include "SignalStorm.hpp"
#include "TestFiles.hpp"

using Korvel::executeCommand;

namespace {

/// A wait status in the system's format, for an injection.
constexpr const char* stoppedBySigstop = "7f130000";

class ExecuteCommand : public testing::Test {
protected:
    OutputCapture console;
};

TEST_F(ExecuteCommand, SucceedsSilentlyWithStatusZero) {
    EXPECT_TRUE(executeCommand("true"));

    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "");
}

TEST_F(ExecuteCommand, RunsAWholeShellCommandLine) {
    EXPECT_TRUE(executeCommand("cd /tmp && echo \"a  b\" | tr a-z A-Z > upper; cat upper 1>&2"));

    EXPECT_EQ(contentOfFile("/tmp/upper"), "A  B\n");
    EXPECT_EQ(console.err(), "A  B\n");
}

TEST_F(ExecuteCommand, ReportsACommandThatExitsWithStatus2) {
    EXPECT_FALSE(executeCommand("exit 2"));

    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "Command: exit 2 exited with error, exit code: 2\n");
}

TEST_F(ExecuteCommand, ReportsTheHighestExitCode) {
    EXPECT_FALSE(executeCommand("exit 255"));

    EXPECT_EQ(console.err(), "Command: exit 255 exited with error, exit code: 255\n");
}

TEST_F(ExecuteCommand, ReportsACommandThatDoesNotExist) {
    EXPECT_FALSE(executeCommand("nosuchcommand 2> /dev/null"));

    EXPECT_EQ(console.err(), "Command: nosuchcommand 2> /dev/null exited with error, exit code: 127\n");
}

TEST_F(ExecuteCommand, ReportsTheSignalThatEndedAShell) {
    EXPECT_FALSE(executeCommand("kill -KILL $$"));

    EXPECT_EQ(console.err(), "Command: kill -KILL $$ was signalled: 9\n");
}

TEST_F(ExecuteCommand, ExcludesTheCoreFlagFromTheSignal) {
    EXPECT_FALSE(executeCommand("kill -ABRT $$"));

    EXPECT_EQ(console.err(), "Command: kill -ABRT $$ was signalled: 6\n");
}

TEST_F(ExecuteCommand, ReportsAFailedWaitForTheChild) {
    std::signal(SIGCHLD, SIG_IGN);

    EXPECT_FALSE(executeCommand("true"));

    std::signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(console.err(), "Error while executing true command, errno: No child processes\n");
}

TEST_F(ExecuteCommand, KeepsWaitingDespiteSignals) {
    const SignalStorm storm;

    EXPECT_TRUE(executeCommand("sleep 0.2; echo awake"));

    EXPECT_GT(SignalStorm::count(), 0);
    EXPECT_EQ(console.out(), "awake\n");
}

TEST(ExecuteCommandUnderFaults, ReportsAShellThatCannotBeStarted) {
    const Outcome outcome = probeInjected({.faults = {"clone,clone3,?vfork,?fork:error=EAGAIN"}},
                                          {"executeCommand", "touch /tmp/started"});

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err,
              "Error while executing touch /tmp/started command, errno: Resource temporarily unavailable\n");
    EXPECT_EQ(filesBelow("/tmp"), std::vector<std::string>{});
}

TEST(ExecuteCommandUnderFaults, ReportsAStoppedChild) {
    const Outcome outcome = probeInjected(
        {.faults = {"wait4:poke_exit=@arg2=" + std::string(stoppedBySigstop)}}, {"executeCommand", "true"});

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err, "Command: true exited with error\n");
}

}  // namespace
