#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Board.hpp"
#include "Process.hpp"
#include "Trace.hpp"

using Boardsim::Board;

TEST(Start, WorksWithStandardDescriptorsClosed) {
    const Board board({});
    EXPECT_EQ(korvel({"getport", "eth1"}, {.closedDescriptors = {0}}).out, "2\n");
    EXPECT_EQ(korvel({"getport", "eth1"}, {.closedDescriptors = {0, 2}}).out, "2\n");
    EXPECT_EQ(korvel({"getport", "eth1"}, {.closedDescriptors = {0, 1, 2}}).status, 0);
    EXPECT_EQ(korvel({"-d", "all", "dump", "dinf"}, {.closedDescriptors = {0, 1, 2}}).status, 0);
}

TEST(Start, DoesNotUseClosedStandardDescriptorsForItsFiles) {
    const Board board({});
    const Outcome outcome = korvel({"-d", "iwf", "print", "dump", "dinf"}, {.closedDescriptors = {1}});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(run({"cat", "/tmp/korvel/fuse/iwf/tracing_on.log"}).out, "0\n");
}

TEST(Start, GetsTheStatusOfCommandsEvenIfItsParentIgnoredSigchld) {
    const Board board({});
    const Outcome outcome = korvel({"-d", "iwf", "dump", "dinf"}, {.ignoredSignals = {SIGCHLD}});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(Start, ReportsLostOutput) {
    const Outcome outcome = korvel({"getport", "4"}, {.standardOutput = "/dev/full"});
    EXPECT_EQ(outcome.err, "Error while writing standard output: No space left on device\n");
    EXPECT_EQ(outcome.status, 1);
}

namespace {

/// Excludes lines about signals and the calls of the sanitizers.
bool isOwnCall(const std::string& call) {
    return call.find('(') != std::string::npos && call.find("/proc/self/") == std::string::npos;
}

}  // namespace

TEST(Start, PassesNoDescriptorsToChildProcesses) {
    const Board board({});
    const std::vector<std::string> commandLines[] = {{"getport", "eth1"}, {"-d", "all", "dump", "print"}};
    for (std::vector<std::string> command : commandLines) {
        command.insert(command.begin(), "korvel");
        std::vector<std::string> calls;
        EXPECT_EQ(runTraced("open,openat,socket,dup,dup2", command, calls).status, 0);
        for (const std::string& call : calls) {
            if (isOwnCall(call)) {
                EXPECT_NE(call.find("CLOEXEC"), std::string::npos) << call;
            }
        }
    }
}

TEST(Start, SurvivesAnEmptyArgumentVector) {
    int pipeEnds[2] = {-1, -1};
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(pipeEnds[1], STDOUT_FILENO);
        char* noArguments[] = {nullptr};
        execvp("korvel", noArguments);
        _exit(127);
    }
    close(pipeEnds[1]);
    std::string out(4096, '\0');
    const ssize_t size = read(pipeEnds[0], out.data(), out.size());
    out.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(out,
              "Did not detect a supported Keyword.\n"
              "Use \" --help\" for help.\n");
    EXPECT_EQ(WEXITSTATUS(status), 1);
}
