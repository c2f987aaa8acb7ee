// The archiver is killed during a rotation. Every entry of runtime.log is still there, or its compressed copy
// is complete.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>

#include "ArchiveRunFixture.hpp"

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

std::set<std::string> distinctLines(const std::string& text) {
    std::set<std::string> all;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        all.insert(line);
    }
    return all;
}

class ArchiveKillTest : public ArchiveRunFixture,
                        public testing::WithParamInterface<std::chrono::milliseconds> {
protected:
    /// A command that the archiver leaves behind becomes a child of this process.
    ArchiveKillTest() { ::prctl(PR_SET_CHILD_SUBREAPER, 1); }

    /// Waits until the complete piece is being copied to `target`, and then until the time of this test.
    static void awaitMoment(const std::string& target) {
        while (!fs::exists(target) && !fs::exists(target + ".gz")) {
            std::this_thread::sleep_for(200us);
        }
        std::this_thread::sleep_for(GetParam());
    }

    /// Kills only the archiver. The command that it waits for runs to its end.
    void killArchiver() {
        EXPECT_EQ(end(SIGKILL), endedBy(SIGKILL));
        reapLeftCommands();
    }

    /// Kills the command as well.
    void killArchiverAndItsCommand() {
        EXPECT_EQ(end(SIGKILL), endedBy(SIGKILL));
        std::ifstream children("/proc/thread-self/children");
        for (pid_t child = 0; children >> child;) {
            ::kill(child, SIGKILL);
        }
        reapLeftCommands();
    }

    /// The number of the log's entries that are in none of the files. An uncompressed copy does not count.
    std::size_t lostEntries() {
        const std::set<std::string> kept = distinctLines(syslib.files.all());
        const std::set<std::string> written = distinctLines(syslib.log.text());
        return static_cast<std::size_t>(std::count_if(
            written.begin(), written.end(), [&](const std::string& line) { return !kept.contains(line); }));
    }

    static constexpr int highSpeed = 100;

private:
    static void reapLeftCommands() {
        while (::waitpid(-1, nullptr, 0) > 0) {
        }
    }
};

TEST_P(ArchiveKillTest, InTheFirstRotationLosesNothing) {
    start(atSpeed(highSpeed));
    approachRotation();
    completePiece();
    awaitMoment(syslib.files.startupPath);

    killArchiver();

    EXPECT_EQ(lostEntries(), 0U);
}

TEST_P(ArchiveKillTest, TogetherWithTheCommandInTheFirstRotationLosesNothing) {
    start(atSpeed(highSpeed));
    approachRotation();
    completePiece();
    awaitMoment(syslib.files.startupPath);

    killArchiverAndItsCommand();

    EXPECT_EQ(lostEntries(), 0U);
}

TEST_P(ArchiveKillTest, TogetherWithTheCommandInTheSecondRotationLosesNothing) {
    start(atSpeed(highSpeed));
    approachRotation();
    completePiece();
    await([this] { return syslib.hasAll(); });
    approachRotation();
    completePiece();
    awaitMoment(syslib.files.middlePath);

    killArchiverAndItsCommand();

    EXPECT_EQ(lostEntries(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Moments, ArchiveKillTest,
                         testing::Values(0ms, 2ms, 4ms, 6ms, 8ms, 10ms, 12ms, 15ms, 20ms, 30ms, 50ms),
                         [](const auto& moment) { return std::to_string(moment.param.count()) + "ms"; });

}  // namespace
