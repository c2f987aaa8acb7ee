// A failed rotation. Nothing is lost, and the archiver retries it.

#include <cstdlib>
#include <filesystem>

#include "ArchiveFixture.hpp"
#include "OwnCommand.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveRotationFailureTest : public ArchiveFixture {
protected:
    ArchiveRotationFailureTest() { follow(); }
    void TearDown() override { setSearchPath(searchPath); }

    static void setSearchPath(const std::string& path) { ::setenv("PATH", path.c_str(), 1); }

    /// Writes and archives the next entry. Returns the output.
    Printed archiveOneMore() {
        log.write(1);
        return update();
    }

    /// The errors of the shell and its commands if `path` cannot be compressed.
    static Printed notCompressed(const std::string& path) {
        return {.err = "gzip: " + path + ".gz: Is a directory\nCommand: /bin/gzip -f " + path +
                       " exited with error, exit code: 1\n"};
    }

    /// The same if it cannot be written.
    Printed notCopied(const std::string& path) const {
        return {.err = "cp: not writing through dangling symlink '" + path + "'\nCommand: cp " +
                       files.runtimePath + " " + path + " exited with error, exit code: 1\n"};
    }

private:
    const std::string searchPath = std::getenv("PATH");
};

TEST_F(ArchiveRotationFailureTest, KeepsAppendingUntilTheFileCanBeCompressed) {
    fs::create_directories(files.startupPath + ".gz");

    EXPECT_EQ(archive(threshold), notCompressed(files.startupPath));
    EXPECT_TRUE(files.runtime() == log.text());
    for (int more = 0; more < 3; ++more) {
        EXPECT_EQ(archiveOneMore(), notCompressed(files.startupPath));
        EXPECT_TRUE(files.runtime() == log.text());
    }

    fs::remove(files.startupPath + ".gz");
    EXPECT_EQ(archiveOneMore(), Printed{});
    EXPECT_EQ(filesBelow(files.directory), (std::vector<std::string>{"runtime.log", "startup.log.gz"}));
    EXPECT_EQ(files.runtime(), "");
    EXPECT_TRUE(files.startup() == log.text());
}

TEST_F(ArchiveRotationFailureTest, KeepsAppendingUntilTheFileCanBeCopied) {
    fs::create_symlink("/tmp/nowhere", files.startupPath);

    EXPECT_EQ(archive(threshold), notCopied(files.startupPath));
    EXPECT_EQ(archiveOneMore(), notCopied(files.startupPath));
    EXPECT_TRUE(files.runtime() == log.text());
    EXPECT_EQ(filesBelow(files.directory), std::vector<std::string>{"runtime.log"});

    fs::remove(files.startupPath);
    EXPECT_EQ(archiveOneMore(), Printed{});
    EXPECT_EQ(files.runtime(), "");
    EXPECT_TRUE(files.startup() == log.text());
}

TEST_F(ArchiveRotationFailureTest, MakesTheFirstSuccessTheStartupFile) {
    fs::create_symlink("/tmp/nowhere", files.startupPath);
    archive(threshold);
    fs::remove(files.startupPath);
    archiveOneMore();
    const std::string first = log.text();

    EXPECT_EQ(archive(threshold), Printed{});

    EXPECT_TRUE(files.startup() == first);
    EXPECT_TRUE(files.all() == log.text());
    EXPECT_EQ(files.runtime(), "");
}

TEST_F(ArchiveRotationFailureTest, IsRetriedForTheMiddleFileToo) {
    archive(threshold);
    fs::create_symlink("/tmp/nowhere", files.middlePath);

    EXPECT_EQ(archive(threshold), notCopied(files.middlePath));
    EXPECT_TRUE(files.all() == log.text());

    fs::remove(files.middlePath);
    EXPECT_EQ(archiveOneMore(), Printed{});
    EXPECT_TRUE(files.all() == log.text());
    EXPECT_EQ(files.runtime(), "");
}

TEST_F(ArchiveRotationFailureTest, IsNotRetriedBeforeThereIsMoreToWrite) {
    fs::create_symlink("/tmp/nowhere", files.startupPath);
    archive(threshold);

    EXPECT_EQ(update(), Printed{});
}

TEST_F(ArchiveRotationFailureTest, KeepsTheEarlierMiddleFileIfNothingCanBeCopied) {
    archive(threshold);
    archive(threshold);
    const std::string before = files.middle();
    fs::create_symlink("/tmp/nowhere", files.middlePath);

    archive(threshold);

    EXPECT_TRUE(files.middle() == before);
    EXPECT_TRUE(files.all() == log.text());
}

TEST_F(ArchiveRotationFailureTest, TreatsAMissingCommandAsAFailure) {
    setSearchPath("/tmp/nowhere");

    EXPECT_EQ(archive(threshold),
              (Printed{.err = "sh: 1: cp: not found\nCommand: cp " + files.runtimePath + " " +
                              files.startupPath + " exited with error, exit code: 127\n"}));
    EXPECT_TRUE(files.runtime() == log.text());
}

TEST_F(ArchiveRotationFailureTest, StopsFollowingIfTheFileCannotBeReopened) {
    setSearchPath(searchPathWith("cp", "/bin/cp \"$@\" && rm \"$1\" && mkdir \"$1\"\n"));
    EXPECT_EQ(archive(threshold), Printed{});
    const std::string first = log.text();
    EXPECT_TRUE(files.startup() == first);

    fs::remove(files.runtimePath);
    log.write(600);
    EXPECT_EQ(update(), Printed{});

    EXPECT_EQ(filesBelow(files.directory), std::vector<std::string>{"startup.log.gz"});
    EXPECT_TRUE(files.startup() == first);
}

}  // namespace
