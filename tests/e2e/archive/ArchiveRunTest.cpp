// A run of the archiver without failures.

#include <algorithm>
#include <chrono>

#include "ArchiveRunFixture.hpp"
#include "Board.hpp"
#include "LogWriters.hpp"
#include "SystemLog.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class ArchiveRunTest : public ArchiveRunFixture {
protected:
    static constexpr std::size_t entrySize = 1000;

    /// Waits until both logs are archived completely.
    void awaitAll() {
        await([this] { return dispatcher.hasAll() && (syslib.log.text().empty() || syslib.hasAll()); });
    }
};

TEST_F(ArchiveRunTest, ReportsBothFilesInTheDispatchersLogAndArchivesTheReport) {
    start();
    awaitAll();

    EXPECT_EQ(end(), endedBy(SIGTERM));

    EXPECT_EQ(records(),
              (std::vector<std::string>{openForMonitoring(dispatcher), openForMonitoring(syslib)}));
    EXPECT_EQ(filesBelow("/tmp/korvel"),
              (std::vector<std::string>{"archive/dispatcher/runtime.log", "archive/syslib/runtime.log"}));
    EXPECT_EQ(dispatcher.files.runtime(), dispatcher.log.text());
    EXPECT_EQ(syslib.files.runtime(), "");
}

TEST_F(ArchiveRunTest, CopiesBothLogsAsTheyGrow) {
    dispatcher.log.write(5, entrySize);
    syslib.log.write(3, entrySize);
    start();
    for (int round = 0; round < 4; ++round) {
        awaitAll();
        dispatcher.log.write(20, entrySize);
        syslib.log.write(30, entrySize);
    }
    awaitAll();

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_EQ(records().size(), 5U + 2U + 4U * 20U);
}

TEST_F(ArchiveRunTest, LooksAtOnceAndThenEveryFiveSeconds) {
    syslib.log.write(1, entrySize);
    const Clock::time_point begin = Clock::now();
    start({});
    awaitAll();
    syslib.log.write(1, entrySize);
    awaitAll();

    EXPECT_GE(Clock::now() - begin, 5s);
    EXPECT_EQ(end(), endedBy(SIGTERM));
}

TEST_F(ArchiveRunTest, EndsImmediatelyOnASignalAndKeepsItsCopies) {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT, SIGKILL}) {
        SCOPED_TRACE(signal);
        syslib.log.write(10, entrySize);
        start();
        awaitAll();

        EXPECT_EQ(end(signal), endedBy(signal));

        EXPECT_TRUE(syslib.hasAll());
    }
}

TEST_F(ArchiveRunTest, TruncatesItsRuntimeFilesAndKeepsTheOthers) {
    writeFile(dispatcher.files.runtimePath, "runtime of before\n");
    writeFile(syslib.files.runtimePath, "runtime of before\n");
    writeFile(syslib.files.startupPath + ".gz", "startup of before");
    writeFile(syslib.files.middlePath + ".gz", "middle of before");
    syslib.log.write(1, entrySize);

    start();
    awaitAll();

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_EQ(contentOfFile(syslib.files.startupPath + ".gz"), "startup of before");
    EXPECT_EQ(contentOfFile(syslib.files.middlePath + ".gz"), "middle of before");
}

TEST_F(ArchiveRunTest, WritesNothingToTheSystemLog) {
    SystemLog systemLog;
    syslib.log.write(1, entrySize);
    start();
    awaitAll();

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_EQ(systemLog.records(), std::vector<std::string>{});
}

TEST_F(ArchiveRunTest, FollowsTheLogsOfTheBoardsProcesses) {
    {
        const Board board({});
        start();
        awaitAll();
        const std::size_t before = dispatcher.log.text().size();
        await([&] { return dispatcher.log.text().size() > before && !syslib.log.text().empty(); });
    }
    awaitAll();

    EXPECT_EQ(end(), endedBy(SIGTERM));
}

TEST_F(ArchiveRunTest, KeepsEveryEntryOfTwentyWritersInOrder) {
    constexpr int writers = 20;
    constexpr int entries = 40;
    constexpr int rounds = 3;
    start();
    for (int round = 0; round < rounds; ++round) {
        EXPECT_TRUE(writeFromProcesses(writers, entries, "syslib_log_memory"));
        awaitAll();
    }

    EXPECT_EQ(end(), endedBy(SIGTERM));
    const std::string all = syslib.files.all();
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), writers * entries * rounds);
    EXPECT_GT(syslib.files.startup().size(), threshold);
}

}  // namespace
