#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Board.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;
using Boardsim::Deployment;

TEST(Output, IsCompleteIfASignalInterruptsIt) {
    const Board board({.deployment = Deployment::iwf, .fullLogs = true});
    // The pipe is full before the signal arrives, because its reader starts after it.
    const Outcome outcome =
        run({"bash", "-c",
             "{ korvel dlog print pkg & sleep 0.5; kill -TERM $!; wait $!; echo $? > /tmp/status; }"
             " | { sleep 1; cat > /tmp/out; }"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(contentOfFile("/tmp/status"), "0\n");
    const std::string header = "### NETFP LOG " + std::string(50, '#') + "\n";
    EXPECT_EQ(contentOfFile("/tmp/out"), header + contentOfFile("/tmp/korvel/fuse/HistoryLog.log") + "\n");
}

TEST(Output, BeyondTheLimitOfFileSizesIsReportedAndTheRestIsWritten) {
    const Board board({.deployment = Deployment::iwf});
    const Outcome outcome = korvel({"dump", "dinf", "dstat"}, {.limits = {{RLIMIT_FSIZE, 500}}});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "Error while writing /tmp/korvel/mmi/iwf/SocketSvcInfo.log: File too large\n"
              "Error while writing /tmp/korvel/mmi/iwf/SocketSvcCounters.log: File too large\n"
              "Error while writing /tmp/korvel/mmi/iwf/ReassemblyCounters.log: File too large\n"
              "Error while writing /tmp/korvel/mmi/iwf/HeapStats.log: File too large\n");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(contentOfFile("/tmp/korvel/fuse/iwf/tracing_on.log"), "0\n");
}
