// Entries that were overwritten before the archiver read them.

#include <csignal>

#include <sys/wait.h>

#include "ArchiveRunFixture.hpp"

namespace {

class ArchiveGapTest : public ArchiveRunFixture {
protected:
    static constexpr std::size_t shortEntry = 100;
    static constexpr unsigned moreThanTheLogKeeps = 600;  // of the largest entries
    static constexpr std::size_t keptEntries = 511;

    static constexpr const char* warning = "WARNING: Shared memory overlap. Log is missing entries\n";

    /// Stops the archiver during its pause.
    void stopArchiver() const {
        ::kill(archiver().pid(), SIGSTOP);
        ::waitpid(archiver().pid(), nullptr, WUNTRACED);
    }

    void continueArchiver() const { ::kill(archiver().pid(), SIGCONT); }
};

TEST_F(ArchiveGapTest, IsMarkedByAWarningBeforeTheRemainingEntries) {
    syslib.log.write(1, shortEntry);
    start(atSpeed(5));
    await([this] { return syslib.hasAll(); });
    const std::string before = syslib.log.text();

    stopArchiver();
    syslib.log.write(moreThanTheLogKeeps);
    continueArchiver();

    const std::string left =
        syslib.log.text().substr(syslib.log.text().size() - keptEntries * RecordedLog::largest);
    await([&] { return syslib.files.runtime() == before + warning + left; });
    EXPECT_EQ(end(), endedBy(SIGTERM));
}

TEST_F(ArchiveGapTest, InOneLogLeavesTheOtherComplete) {
    syslib.log.write(1, shortEntry);
    start(atSpeed(5));
    await([this] { return syslib.hasAll() && dispatcher.hasAll(); });

    stopArchiver();
    syslib.log.write(moreThanTheLogKeeps);
    dispatcher.log.write(3, shortEntry);
    continueArchiver();

    await([this] { return dispatcher.hasAll() && syslib.files.runtime().size() > threshold / 2; });
    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_FALSE(syslib.hasAll());
}

TEST_F(ArchiveGapTest, IsReportedOnceIfItsWarningCannotBeWritten) {
    constexpr std::size_t limit = 4096;
    Surroundings limited = atSpeed(5);
    limited.limits = {{RLIMIT_FSIZE, limit}};
    syslib.log.write(1, limit);
    start(limited);
    await([this] { return syslib.hasAll() && dispatcher.hasAll(); });
    const std::string before = syslib.log.text();

    stopArchiver();
    syslib.log.write(moreThanTheLogKeeps);
    continueArchiver();
    awaitRecords(3);
    syslib.log.write(1);
    dispatcher.log.write(1, shortEntry);
    await([this] { return dispatcher.hasAll(); });

    EXPECT_EQ(end(), endedBy(SIGTERM));
    EXPECT_EQ(records().size(), 4U);
    EXPECT_EQ(records().at(2), notWritten(syslib));
    EXPECT_EQ(syslib.files.runtime(), before);
}

}  // namespace
