#include "CollectionFixture.hpp"
#include "TestFiles.hpp"

namespace {

/// A board's log library that throws when a log is read. Only the collector that reads the log fails.
class CollectorExceptionTest : public CollectionFixture {
protected:
    CollectorExceptionTest() { startBoard(); }

    const Surroundings throwing{.environment = {{"LD_LIBRARY_PATH", besideThisProgram("throwing")}}};
};

TEST_F(CollectorExceptionTest, OneFromTheDispatchersLogLosesOnlyThisLog) {
    const Outcome outcome = collect({"-d", "iwf", "print", "dump", "dinf", "dlog", "proxy"}, throwing);

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + section("NETFP LOG", "") +
                                   printedReplies("iwf", infoCommands) +
                                   section("netfp_proxy", dumpText("netfp_proxy")),
                               "Error: cannot read dispatcher_log_memory\n"
                               "Output of /tmp/korvel/fuse/HistoryLog.log is empty\n"));
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", infoStates), replyFiles("iwf", infoCommands)}));
}

TEST_F(CollectorExceptionTest, OneFromTheSyslibLogLosesTheDumpsAfterIt) {
    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf", "slog", "proxy"}, throwing);

    EXPECT_EQ(outcome, success("",
                               "Error: cannot read syslib_log_memory\n"
                               "Syslib shared memory log not found\n"));
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", infoStates), replyFiles("iwf", infoCommands)}));
}

}  // namespace
