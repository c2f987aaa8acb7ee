// A log that grew faster than it was archived.

#include "ArchiveFixture.hpp"

namespace {

/// The parts of an archive before and after the warning.
struct Parts {
    std::string before;
    std::string behind;
};

class ArchiveOverlapTest : public ArchiveFixture {
protected:
    static constexpr std::string_view warning = "WARNING: Shared memory overlap. Log is missing entries\n";
    static constexpr std::size_t shortEntry = 100;
    static constexpr std::size_t keptEntries = (wholeBuffer - 1) / RecordedLog::largest;

    /// Writes more than the log keeps.
    void overwriteEverything() { log.write(600); }

    /// The entries that remain then.
    std::string kept() { return log.text().substr(log.text().size() - keptEntries * RecordedLog::largest); }

    /// Splits a text at its only warning.
    static Parts parts(const std::string& text) {
        const std::size_t place = text.find(warning);
        if (place == std::string::npos || place != text.rfind(warning)) {
            ADD_FAILURE() << "not one warning";
            return {};
        }
        return {text.substr(0, place), text.substr(place + warning.size())};
    }
};

TEST_F(ArchiveOverlapTest, WarnsBeforeTheRemainingEntries) {
    follow();
    log.write(2, shortEntry);
    update();
    const std::string taken = log.text();
    overwriteEverything();

    EXPECT_EQ(update(), Printed{});

    const auto [before, behind] = parts(files.all());
    EXPECT_EQ(before, taken);
    EXPECT_TRUE(behind == kept());
}

TEST_F(ArchiveOverlapTest, WarnsAboutEveryGap) {
    follow();
    log.write(1, shortEntry);
    update();
    for (int gap = 0; gap < 3; ++gap) {
        overwriteEverything();
        update();
        EXPECT_TRUE(parts(files.runtime()).behind == kept());
        log.write(1);
        update();
        EXPECT_EQ(files.runtime(), "");  // the next gap is written there
    }
}

TEST_F(ArchiveOverlapTest, DoesNotWarnAboutEntriesLostBeforeItsFirstStep) {
    overwriteEverything();
    follow();

    update();

    EXPECT_TRUE(files.all() == kept());
}

TEST_F(ArchiveOverlapTest, WarnsIfThereWasNothingToCopyBefore) {
    follow();
    update();
    overwriteEverything();

    update();

    const auto [before, behind] = parts(files.all());
    EXPECT_EQ(before, "");
    EXPECT_TRUE(behind == kept());
}

TEST_F(ArchiveOverlapTest, DoesNotWarnIfOnlyCopiedEntriesAreOverwritten) {
    follow();
    for (int step = 0; step < 5; ++step) {
        log.write(200);
        update();
    }

    EXPECT_TRUE(files.all() == log.text());
}

TEST_F(ArchiveOverlapTest, WarnsOnceIfTheRemainingEntriesTakeSeveralSteps) {
    follow();
    log.write(1, shortEntry);
    update();
    const std::string taken = log.text();
    overwriteEverything();

    for (int step = 0; step < 3; ++step) {
        update(wholeBuffer / 2);
    }

    const auto [before, behind] = parts(files.all());
    EXPECT_EQ(before, taken);
    EXPECT_TRUE(behind == kept());
}

TEST_F(ArchiveOverlapTest, WarnsEvenIfTheBufferHasNoRoomForAnEntry) {
    follow();
    log.write(1, shortEntry);
    update();
    const std::string taken = log.text();
    overwriteEverything();

    update(RecordedLog::largest);
    EXPECT_EQ(files.all(), taken + std::string(warning));

    update();
    EXPECT_TRUE(parts(files.all()).behind == kept());
}

TEST_F(ArchiveOverlapTest, DoesNotCountTheWarningTowardTheThreshold) {
    follow();
    log.write(1, shortEntry);
    update();
    overwriteEverything();
    update();
    const std::size_t entries = files.runtime().size() - warning.size();

    log.write(1, threshold - entries - 1);
    update();
    EXPECT_EQ(files.runtime().size(), threshold - 1 + warning.size());

    log.write(1, shortEntry);
    update();
    EXPECT_EQ(files.runtime(), "");
    EXPECT_EQ(files.startup().size(), threshold - 1 + shortEntry + warning.size());
}

}  // namespace
