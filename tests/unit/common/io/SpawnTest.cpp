#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "FailingCall.hpp"
#include "OutputCapture.hpp"
#include "Probe.hpp"
#include "Spawn.hpp"

using Korvel::spawnAndWait;

namespace {

int runScript(const char* script) {
    const std::array argv{"sh", "-c", script, static_cast<const char*>(nullptr)};
    return spawnAndWait("/bin/sh", argv.data());
}

void (*dispositionOf(int signal))(int) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler;
}

TEST(SpawnAndWait, ReturnsTheWaitStatus) {
    EXPECT_EQ(WEXITSTATUS(runScript("exit 42")), 42);
    EXPECT_EQ(WTERMSIG(runScript("kill -KILL $$")), SIGKILL);
    EXPECT_EQ(runScript(":"), 0);
}

TEST(SpawnAndWait, FailsWithTheReasonIfTheProgramIsMissing) {
    const std::array argv{"absent", static_cast<const char*>(nullptr)};

    EXPECT_EQ(spawnAndWait("/tmp/absent", argv.data()), -1);
    EXPECT_STREQ(std::strerror(errno), "No such file or directory");
}

TEST(SpawnAndWait, FailsWithTheReasonIfTheProgramCannotBeRun) {
    runFailing({.number = SYS_execve, .error = EACCES}, [] {
        EXPECT_EQ(runScript(":"), -1);
        EXPECT_STREQ(std::strerror(errno), "Permission denied");
    });
}

TEST(SpawnAndWait, PassesTheTerminalsSignalsOnlyToTheCommand) {
    OutputCapture console;

    const int status = runScript("kill -INT $PPID; kill -QUIT $PPID; kill -INT $$");

    EXPECT_EQ(WTERMSIG(status), SIGINT);
}

TEST(SpawnAndWait, RestoresTheSignalDispositionsAndTheMask) {
    sigset_t before{};
    ::sigprocmask(SIG_BLOCK, nullptr, &before);

    runScript(":");

    sigset_t after{};
    ::sigprocmask(SIG_BLOCK, nullptr, &after);
    EXPECT_EQ(dispositionOf(SIGINT), SIG_DFL);
    EXPECT_EQ(dispositionOf(SIGQUIT), SIG_DFL);
    EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);
}

TEST(SpawnAndWait, KeepsIgnoringASignalThatItsParentIgnored) {
    const Outcome outcome =
        probe({"executeCommand", "kill -INT $$; echo survived"}, {.ignoredSignals = {SIGINT}});

    EXPECT_EQ(outcome.out, "survived\ntrue\n");
}

}  // namespace
