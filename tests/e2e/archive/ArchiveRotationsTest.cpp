// Several rotations of a run.

#include "ArchiveRunFixture.hpp"
#include "TestFiles.hpp"

namespace {

class ArchiveRotationsTest : public ArchiveRunFixture {
protected:
    static constexpr unsigned someEntries = 300;  ///< more than half of the size for a rotation

    /// Writes more entries to both logs and waits until the archiver has copied them.
    void archiveSome() {
        dispatcher.log.write(someEntries);
        syslib.log.write(someEntries);
        await([this] { return dispatcher.hasNewest() && syslib.hasNewest(); });
    }

    void archiveSome(int times) {
        for (int i = 0; i < times; ++i) {
            archiveSome();
        }
    }
};

const std::vector<std::string> allThree{"middle.log.gz", "runtime.log", "startup.log.gz"};

TEST_F(ArchiveRotationsTest, LoseNoByteBeforeAPieceIsReplaced) {
    start();
    archiveSome(5);

    EXPECT_EQ(end(), endedBy(SIGTERM));
    for (FollowedLog* const followed : {&dispatcher, &syslib}) {
        SCOPED_TRACE(followed->files.directory);
        EXPECT_EQ(filesBelow(followed->files.directory), allThree);
        EXPECT_TRUE(followed->hasAll());
        EXPECT_GE(followed->files.startup().size(), threshold);
        EXPECT_GE(followed->files.middle().size(), threshold);
    }
}

TEST_F(ArchiveRotationsTest, KeepTheFirstPieceAndTheLatest) {
    start();
    archiveSome(9);

    EXPECT_EQ(end(), endedBy(SIGTERM));
    for (FollowedLog* const followed : {&dispatcher, &syslib}) {
        SCOPED_TRACE(followed->files.directory);
        EXPECT_EQ(filesBelow(followed->files.directory), allThree);
        EXPECT_TRUE(followed->log.text().starts_with(followed->files.startup()));
        EXPECT_TRUE(followed->log.text().ends_with(followed->files.middle() + followed->files.runtime()));
        EXPECT_GE(followed->files.startup().size(), threshold);
        EXPECT_GE(followed->files.middle().size(), threshold);
        EXPECT_LT(followed->files.all().size(), followed->log.text().size());
    }
}

TEST_F(ArchiveRotationsTest, ReplaceThePiecesOfAnEarlierRun) {
    start();
    archiveSome(5);
    EXPECT_EQ(end(), endedBy(SIGTERM));
    const std::string middleOfBefore = syslib.files.middle();

    start();  // including the entries that the log still has
    constexpr std::size_t keptEntries = 511;
    await([this] { return syslib.files.runtime().size() == keptEntries * RecordedLog::largest; });
    syslib.log.write(someEntries);
    await([this] {
        const std::string runtime = syslib.files.runtime();
        return runtime.size() < threshold && syslib.log.text().ends_with(syslib.files.startup() + runtime);
    });

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_EQ(filesBelow(syslib.files.directory), allThree);
    EXPECT_GE(syslib.files.startup().size(), threshold);
    EXPECT_TRUE(syslib.files.middle() == middleOfBefore);
}

}  // namespace
