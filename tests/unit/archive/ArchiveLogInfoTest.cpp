// The text that one step copies from the log.

#include <filesystem>

#include "ArchiveFixture.hpp"
#include "TestFiles.hpp"

namespace {

class ArchiveLogInfoTest : public ArchiveFixture {
protected:
    static constexpr std::size_t entrySize = 100;
};

TEST_F(ArchiveLogInfoTest, CreatesItsFolderAndAnEmptyFile) {
    EXPECT_EQ(follow(), Printed{});

    EXPECT_EQ(filesBelow("/tmp/korvel"), std::vector<std::string>{"archive/dispatcher/runtime.log"});
    EXPECT_EQ(files.runtime(), "");
}

TEST_F(ArchiveLogInfoTest, TruncatesTheFileOfAnEarlierRunAndKeepsTheOthers) {
    writeFile(files.runtimePath, "runtime of before");
    writeFile(files.startupPath + ".gz", "startup of before");
    writeFile(files.middlePath + ".gz", "middle of before");

    follow();

    EXPECT_EQ(files.runtime(), "");
    EXPECT_EQ(contentOfFile(files.startupPath + ".gz"), "startup of before");
    EXPECT_EQ(contentOfFile(files.middlePath + ".gz"), "middle of before");
}

TEST_F(ArchiveLogInfoTest, CopiesTheEntriesFromBeforeItsStart) {
    log.write(3, entrySize);
    follow();

    EXPECT_EQ(update(), Printed{});

    EXPECT_EQ(files.all(), log.text());
}

TEST_F(ArchiveLogInfoTest, CopiesEachEntryOnce) {
    follow();
    for (int step = 0; step < 5; ++step) {
        log.write(3, entrySize);

        EXPECT_EQ(update(), Printed{});

        EXPECT_EQ(files.all(), log.text());
    }
}

TEST_F(ArchiveLogInfoTest, WritesNothingIfThereAreNoNewEntries) {
    log.write(1, entrySize);
    follow();
    update();
    const auto written = std::filesystem::last_write_time(files.runtimePath);

    for (int step = 0; step < 3; ++step) {
        EXPECT_EQ(update(), Printed{});
    }
    EXPECT_EQ(std::filesystem::last_write_time(files.runtimePath), written);
    EXPECT_EQ(files.all(), log.text());

    log.write(1, entrySize);
    update();
    EXPECT_EQ(files.all(), log.text());
}

TEST_F(ArchiveLogInfoTest, StaysEmptyWithAnEmptyLog) {
    follow();

    EXPECT_EQ(update(), Printed{});

    EXPECT_EQ(files.all(), "");
}

TEST_F(ArchiveLogInfoTest, CopiesWholeEntriesInSeveralStepsIfTheBufferIsSmall) {
    follow();
    log.write(5, entrySize);

    for (std::size_t entries = 2; entries <= 6; entries += 2) {
        update(3 * entrySize);  // including the terminating zero
        EXPECT_EQ(files.all(), log.text().substr(0, entries * entrySize));
    }
}

TEST_F(ArchiveLogInfoTest, CopiesAnEntryThatFillsTheBufferUpToItsLastByte) {
    follow();
    log.write(1, entrySize);

    update(entrySize);
    EXPECT_EQ(files.all(), "");

    update(entrySize + 1);
    EXPECT_EQ(files.all(), log.text());
}

TEST_F(ArchiveLogInfoTest, CopiesAFullLogInOneStep) {
    follow();
    log.write(511, RecordedLog::largest);
    log.write(1, RecordedLog::largest - 1);
    ASSERT_EQ(log.text().size(), wholeBuffer - 1);

    update();

    EXPECT_TRUE(files.runtime() == log.text());
}

TEST_F(ArchiveLogInfoTest, FollowsNothingWithoutALog) {
    Korvel::ArchiveMgr owner;
    Korvel::ArchiveMgr::ArchiveLogInfo idle(owner, "syslib", nullptr);
    std::string buffer(wholeBuffer, '?');

    const Printed printed = printedBy([&] { idle.updateLog(buffer.data(), wholeBuffer); });

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(filesBelow("/tmp/korvel"), std::vector<std::string>{"archive/syslib/runtime.log"});
    EXPECT_EQ(ArchiveFiles("syslib").runtime(), "");
}

}  // namespace
