// The rotation of a full runtime.log.

#include "ArchiveFixture.hpp"
#include "TestFiles.hpp"

namespace {

class ArchiveRotationTest : public ArchiveFixture {
protected:
    ArchiveRotationTest() { follow(); }

    /// The text of the log after `before`.
    std::string since(const std::string& before) { return log.text().substr(before.size()); }

    std::vector<std::string> names() const { return filesBelow(files.directory); }
};

TEST_F(ArchiveRotationTest, DoesNotHappenOneByteBelowTheThreshold) {
    EXPECT_EQ(archive(threshold - 1), Printed{});

    EXPECT_EQ(names(), std::vector<std::string>{"runtime.log"});
    EXPECT_TRUE(files.runtime() == log.text());
}

TEST_F(ArchiveRotationTest, HappensAtExactlyTheThreshold) {
    EXPECT_EQ(archive(threshold), Printed{});

    EXPECT_EQ(names(), (std::vector<std::string>{"runtime.log", "startup.log.gz"}));
    EXPECT_EQ(files.runtime(), "");
    EXPECT_TRUE(files.startup() == log.text());
}

TEST_F(ArchiveRotationTest, IncludesTheWholeStepThatReachesTheThreshold) {
    archive(threshold - 1);
    log.write(400);

    EXPECT_EQ(update(), Printed{});

    EXPECT_EQ(files.runtime(), "");
    EXPECT_TRUE(files.startup() == log.text());
}

TEST_F(ArchiveRotationTest, StartsTheNextFileEmpty) {
    archive(threshold);
    const std::string first = log.text();

    log.write(2);
    update();

    EXPECT_TRUE(files.startup() == first);
    EXPECT_EQ(files.runtime(), since(first));
}

TEST_F(ArchiveRotationTest, WritesTheMiddleFileTheSecondTime) {
    archive(threshold);
    const std::string first = log.text();
    EXPECT_EQ(archive(threshold - 1), Printed{});
    EXPECT_EQ(names(), (std::vector<std::string>{"runtime.log", "startup.log.gz"}));

    log.write(1);
    EXPECT_EQ(update(), Printed{});

    EXPECT_EQ(names(), (std::vector<std::string>{"middle.log.gz", "runtime.log", "startup.log.gz"}));
    EXPECT_TRUE(files.startup() == first);
    EXPECT_TRUE(files.middle() == since(first));
    EXPECT_EQ(files.runtime(), "");
}

TEST_F(ArchiveRotationTest, ReplacesTheMiddleFileEveryLaterTime) {
    archive(threshold);
    const std::string first = log.text();
    for (int time = 2; time <= 5; ++time) {
        const std::string before = log.text();

        EXPECT_EQ(archive(threshold + 1000), Printed{});

        EXPECT_EQ(names(), (std::vector<std::string>{"middle.log.gz", "runtime.log", "startup.log.gz"}));
        EXPECT_TRUE(files.startup() == first);
        EXPECT_TRUE(files.middle() == since(before));
        EXPECT_EQ(files.runtime(), "");
    }
}

TEST_F(ArchiveRotationTest, LosesNoByteInTwoRotationsAndTheRest) {
    for (int step = 0; step < 13; ++step) {
        log.write(97);
        log.write(1, 1000);
        EXPECT_EQ(update(), Printed{});
        EXPECT_TRUE(files.all() == log.text());
    }

    EXPECT_NE(files.middle(), "");
    EXPECT_NE(files.runtime(), "");
}

TEST_F(ArchiveRotationTest, ReplacesTheFilesOfAnEarlierRun) {
    writeFile(files.startupPath, "copy that was never compressed");
    writeFile(files.startupPath + ".gz", "startup of before");
    writeFile(files.middlePath + ".gz", "middle of before");

    EXPECT_EQ(archive(threshold), Printed{});
    EXPECT_TRUE(files.startup() == log.text());
    EXPECT_EQ(contentOfFile(files.middlePath + ".gz"), "middle of before");

    EXPECT_EQ(archive(threshold), Printed{});
    EXPECT_TRUE(files.all() == log.text());
    EXPECT_EQ(names(), (std::vector<std::string>{"middle.log.gz", "runtime.log", "startup.log.gz"}));
}

}  // namespace
