// SYSLIB's archive is on a disk that is too small for it. The dispatcher's is on another disk.

#include <filesystem>

#include <gmock/gmock.h>

#include "ArchiveRunFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveFullDiskTest : public ArchiveRunFixture {
protected:
    ArchiveFullDiskTest() {
        fs::remove_all(disk);
        fs::create_directories(disk);
        fs::create_directories("/tmp/korvel/archive");
        fs::create_directory_symlink(disk, syslib.files.directory);
        // Leaves room on the disk of 6 MiB for one piece but not for its copy.
        writeFile(fs::path(disk) / "filler", std::string(fillerSize, 'x'));
    }

    static void removeFiller() { fs::remove(fs::path(disk) / "filler"); }

    /// Returns when the attempt to rotate has failed.
    void failToRotate() {
        Surroundings together = atSpeed(speed);
        together.together = true;
        start(together);
        approachRotation();
        completePiece();
        await([this] { return archiver().outSoFar().ends_with(" exited with error, exit code: 1\n"); });
    }

    /// Ends the archiver. The shell and cp must have reported the failed copy and nothing else. Their wording
    /// varies.
    void expectOneFailedCopy() {
        const Outcome outcome = end();
        EXPECT_EQ(outcome.status, 128 + SIGTERM);
        EXPECT_THAT(outcome.out,
                    testing::MatchesRegex("cp: error [^\n]*: No space left on device\nCommand: cp " +
                                          syslib.files.runtimePath + " " + syslib.files.startupPath +
                                          " exited with error, exit code: 1\n"));
    }

    static constexpr const char* disk = "/ffs/syslib";
    static constexpr std::size_t fillerSize = std::size_t{5} << 19;
};

TEST_F(ArchiveFullDiskTest, AWriteThatFailsIsReportedOnceAndTheOtherLogGoesOn) {
    failToRotate();
    const std::string before = syslib.log.text();
    syslib.log.write(1);
    awaitRecords(3);

    removeFiller();
    syslib.log.write(1);
    dispatcher.log.write(1);
    await([this] { return dispatcher.hasAll(); });

    expectOneFailedCopy();
    EXPECT_EQ(records().at(2), notWritten(syslib));
    EXPECT_EQ(records().size(), 4U);
    EXPECT_TRUE(syslib.files.runtime() == before);
}

TEST_F(ArchiveFullDiskTest, ACopyThatFailsIsRetriedWhenThereIsRoom) {
    failToRotate();
    EXPECT_TRUE(syslib.files.runtime() == syslib.log.text());

    removeFiller();
    syslib.log.write(1);
    await([this] { return syslib.hasAll(); });

    expectOneFailedCopy();
    EXPECT_EQ(filesBelow(disk), (std::vector<std::string>{"runtime.log", "startup.log.gz"}));
    EXPECT_EQ(records(),
              (std::vector<std::string>{openForMonitoring(dispatcher), openForMonitoring(syslib)}));
}

}  // namespace
