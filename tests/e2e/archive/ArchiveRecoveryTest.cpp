// Rotations that fail while the archiver runs.

#include <filesystem>

#include "ArchiveRunFixture.hpp"
#include "OwnCommand.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchiveRecoveryTest : public ArchiveRunFixture {
protected:
    /// The errors of the shell and its commands if SYSLIB's startup.log cannot be compressed.
    std::string notCompressed() const {
        const std::string& path = syslib.files.startupPath;
        return "gzip: " + path + ".gz: Is a directory\nCommand: /bin/gzip -f " + path +
               " exited with error, exit code: 1\n";
    }
};

TEST_F(ArchiveRecoveryTest, AFileThatCannotBeCompressedIsCompressedLater) {
    fs::create_directories(syslib.files.startupPath + ".gz");
    Surroundings together = atSpeed(speed);
    together.together = true;
    start(together);
    approachRotation();
    completePiece();
    await([this] { return archiver().outSoFar() == notCompressed(); });
    EXPECT_TRUE(syslib.files.runtime() == syslib.log.text());
    syslib.log.write(1);
    await([this] { return archiver().outSoFar() == notCompressed() + notCompressed(); });
    EXPECT_TRUE(syslib.files.runtime() == syslib.log.text());

    fs::remove(syslib.files.startupPath + ".gz");
    syslib.log.write(1);
    await([this] { return syslib.hasAll(); });

    EXPECT_EQ(end(), (Outcome{128 + SIGTERM, notCompressed() + notCompressed(), ""}));
    EXPECT_EQ(filesBelow(syslib.files.directory),
              (std::vector<std::string>{"runtime.log", "startup.log.gz"}));
    EXPECT_EQ(records(),
              (std::vector<std::string>{openForMonitoring(dispatcher), openForMonitoring(syslib)}));
}

TEST_F(ArchiveRecoveryTest, AFileThatCannotBeReopenedIsReportedAndTheOtherLogGoesOn) {
    Surroundings surroundings = atSpeed(speed);
    surroundings.environment["PATH"] = searchPathWith("cp", "/bin/cp \"$@\" && rm \"$1\" && mkdir \"$1\"\n");
    start(surroundings);
    approachRotation();
    completePiece();
    awaitRecords(3);
    const std::string before = syslib.log.text();

    syslib.log.write(600);
    dispatcher.log.write(1);
    await([this] { return dispatcher.hasAll(); });

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_TRUE(syslib.files.startup() == before);
    EXPECT_EQ(filesBelow(syslib.files.directory), std::vector<std::string>{"startup.log.gz"});
    EXPECT_EQ(records().at(2), notOpened(syslib));
}

}  // namespace
