// Logs that the archiver cannot open, and files that it cannot create.

#include <filesystem>

#include <sys/stat.h>

#include "ArchiveRunFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveStartFailureTest : public ArchiveRunFixture {
protected:
    static constexpr std::size_t entrySize = 1000;

    using Records = std::vector<std::string>;

    /// Runs the archiver until it has copied the log that it can follow. The other log has entries too.
    Outcome runUntilTaken(FollowedLog& followed) {
        dispatcher.log.write(1, entrySize);
        syslib.log.write(1, entrySize);
        start();
        await([&] { return followed.hasAll(); });
        return end();
    }

    /// All reports. The test's own entry comes first.
    static Records reports() {
        Records all = records();
        all.erase(all.begin());
        return all;
    }
};

TEST_F(ArchiveStartFailureTest, OneFileThatCannotBeOpenedIsReportedAndTheOtherLogIsFollowed) {
    fs::create_directories(syslib.files.runtimePath);

    EXPECT_EQ(runUntilTaken(dispatcher), endedBy(SIGTERM));

    EXPECT_EQ(reports(), (Records{openForMonitoring(dispatcher), notOpened(syslib)}));
    EXPECT_TRUE(fs::is_empty(syslib.files.runtimePath));
}

TEST_F(ArchiveStartFailureTest, AFailureOfTheDispatchersFileIsReportedOnlyInItsLog) {
    fs::create_directories(dispatcher.files.runtimePath);

    EXPECT_EQ(runUntilTaken(syslib), endedBy(SIGTERM));

    EXPECT_EQ(reports(), (Records{notOpened(dispatcher), openForMonitoring(syslib)}));
    EXPECT_EQ(dispatcher.files.all(), "");
}

TEST_F(ArchiveStartFailureTest, APipeInPlaceOfAFileDoesNotBlock) {
    fs::create_directories(syslib.files.directory);
    ASSERT_EQ(::mkfifo(syslib.files.runtimePath.c_str(), 0600), 0);

    EXPECT_EQ(runUntilTaken(dispatcher), endedBy(SIGTERM));

    EXPECT_EQ(reports(), (Records{openForMonitoring(dispatcher), notOpened(syslib)}));
}

TEST_F(ArchiveStartFailureTest, AFolderThatCannotBeCreatedLeavesItsLogIdle) {
    writeFile(syslib.files.directory, "a file");

    EXPECT_EQ(runUntilTaken(dispatcher),
              (Outcome{128 + SIGTERM, "",
                       "mkdir: cannot create directory '/tmp/korvel/archive/syslib': File exists\n"
                       "Command: mkdir -p /tmp/korvel/archive/syslib exited with error, exit code: 1\n"}));

    EXPECT_EQ(reports(), (Records{openForMonitoring(dispatcher), notOpened(syslib)}));
    EXPECT_EQ(contentOfFile(syslib.files.directory), "a file");
}

TEST_F(ArchiveStartFailureTest, AbortsWithoutTheDispatchersLog) {
    fs::remove("/dev/shm/dispatcher_log_memory");
    fs::create_directory("/dev/shm/dispatcher_log_memory");

    EXPECT_EQ(korvel({"archive"}),
              (Outcome{128 + SIGABRT, "", "ArchiveMgr: Assertion \"nullptr != logClient\" failed.\n"}));

    EXPECT_EQ(filesBelow("/tmp/korvel"), std::vector<std::string>{});
    fs::remove("/dev/shm/dispatcher_log_memory");
}

TEST_F(ArchiveStartFailureTest, WithoutSyslibsLogTheDispatchersLogIsFollowed) {
    fs::remove("/dev/shm/syslib_log_memory");
    fs::create_directory("/dev/shm/syslib_log_memory");
    start();
    await([this] { return dispatcher.hasAll(); });

    EXPECT_EQ(end(), endedBy(SIGTERM));

    EXPECT_EQ(records(), (Records{openForMonitoring(dispatcher), openForMonitoring(syslib)}));
    EXPECT_EQ(contentOfFile(syslib.files.runtimePath), "");
    fs::remove("/dev/shm/syslib_log_memory");
}

}  // namespace
