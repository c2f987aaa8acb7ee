// A runtime.log that cannot be opened or written. The archive stays unchanged, and nothing is retried.

#include <csignal>
#include <filesystem>

#include <sys/stat.h>

#include "ArchiveFixture.hpp"
#include "ResourceLimit.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveUnwritableTest : public ArchiveFixture {
protected:
    static constexpr std::size_t entrySize = 100;

    ArchiveUnwritableTest() : before(std::signal(SIGXFSZ, SIG_IGN)) {}
    void TearDown() override { std::signal(SIGXFSZ, before); }

    /// Limits the size of this process's files.
    static ResourceLimit fileLimit(rlim_t bytes) { return {RLIMIT_FSIZE, bytes}; }

    /// Creates the folder, so that something else can be at the file's path.
    void prepareFolder() const { fs::create_directories(files.directory); }

    void expectIdle() {
        const std::string archived = files.all();
        for (int step = 0; step < 3; ++step) {
            log.write(1, entrySize);
            EXPECT_EQ(update(), Printed{});
        }
        EXPECT_EQ(files.all(), archived);
    }

private:
    void (*before)(int);
};

TEST_F(ArchiveUnwritableTest, IsIdleAfterAFailedWrite) {
    follow();
    {
        const ResourceLimit limit = fileLimit(entrySize);
        log.write(1, entrySize);
        update();
        log.write(1, entrySize);
        EXPECT_EQ(update(), Printed{});
    }

    EXPECT_EQ(files.all(), log.text().substr(0, entrySize));
    expectIdle();
}

TEST_F(ArchiveUnwritableTest, IsIdleAfterAFailedWriteOfTheWarning) {
    follow();
    log.write(1, entrySize);
    update();
    const std::string taken = log.text();
    log.write(600);
    {
        const ResourceLimit limit = fileLimit(entrySize + 8);
        EXPECT_EQ(update(), Printed{});
    }

    EXPECT_EQ(files.all(), taken + "WARNING:");
    expectIdle();
}

TEST_F(ArchiveUnwritableTest, IsIdleOnAFullDisk) {
    prepareFolder();
    fs::create_symlink("/dev/full", files.runtimePath);
    EXPECT_EQ(follow(), Printed{});
    log.write(1, entrySize);

    EXPECT_EQ(update(), Printed{});

    fs::remove(files.runtimePath);
    writeFile(files.runtimePath, "");
    expectIdle();
}

TEST_F(ArchiveUnwritableTest, IsIdleIfADirectoryHasTheFilesName) {
    fs::create_directories(files.runtimePath);
    EXPECT_EQ(follow(), Printed{});

    expectIdle();
    EXPECT_TRUE(fs::is_directory(files.runtimePath));
}

TEST_F(ArchiveUnwritableTest, DoesNotWaitForAReaderOfAPipe) {
    prepareFolder();
    ASSERT_EQ(::mkfifo(files.runtimePath.c_str(), 0600), 0);
    EXPECT_EQ(follow(), Printed{});

    expectIdle();
    EXPECT_TRUE(fs::is_fifo(files.runtimePath));
}

TEST_F(ArchiveUnwritableTest, PrintsTheShellsErrorIfTheFolderCannotBeCreated) {
    writeFile("/tmp/korvel", "a file");

    EXPECT_EQ(follow(), (Printed{.err = "mkdir: cannot create directory '/tmp/korvel': Not a directory\n"
                                        "Command: mkdir -p /tmp/korvel/archive/dispatcher exited with error, "
                                        "exit code: 1\n"}));

    expectIdle();
    EXPECT_EQ(contentOfFile("/tmp/korvel"), "a file");
}

TEST_F(ArchiveUnwritableTest, FollowsItsOwnLinks) {
    prepareFolder();
    fs::create_symlink("/tmp/elsewhere.log", files.runtimePath);
    follow();
    log.write(1, entrySize);

    update();

    EXPECT_EQ(contentOfFile("/tmp/elsewhere.log"), log.text());
    EXPECT_TRUE(fs::is_symlink(files.runtimePath));
}

}  // namespace
