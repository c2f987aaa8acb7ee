#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FileAccess.hpp"
#include "OutputCapture.hpp"
#include "Probe.hpp"
#include "TestFiles.hpp"

using namespace Korvel;

namespace {

namespace fs = std::filesystem;

constexpr const char* pathToRead = "/tmp/input";

/// The content of a file of `size` bytes without equal parts.
std::string repeatingBytes(std::size_t size) {
    std::string pattern;
    while (pattern.size() < size) {
        pattern += std::to_string(pattern.size()) + ' ';
    }
    pattern.resize(size);
    return pattern;
}

/// The content of a file that is read completely.
std::string wholeContentOf(const std::string& path) {
    std::string content;
    return readFile(path, content).isWhole() ? content : "not whole";
}

TEST(IsAccessible, ChecksTheGivenAccess) {
    writeFile(pathToRead, "");
    fs::permissions(pathToRead, fs::perms::owner_read | fs::perms::owner_write);

    EXPECT_TRUE(isAccessible(pathToRead, F_OK));
    EXPECT_FALSE(isAccessible(pathToRead, X_OK));
    EXPECT_FALSE(isAccessible("/tmp/absent", F_OK));
    EXPECT_FALSE(isAccessible("/tmp/" + std::string(5000, 'n'), F_OK));
}

TEST(StateOf, FollowsLinksToTheFile) {
    fs::remove_all("/tmp/folder");
    fs::create_directory("/tmp/folder");
    fs::remove("/tmp/link");
    fs::create_symlink("folder", "/tmp/link");

    ASSERT_TRUE(stateOf("/tmp/link"));
    EXPECT_TRUE(stateOf("/tmp/link")->isDirectory());
    EXPECT_FALSE(stateOf("/tmp/absent"));
    EXPECT_EQ(errno, ENOENT);
}

TEST(StateOf, ChangesWithEveryWrite) {
    writeFile(pathToRead, "one");
    const FileState before = stateOf(pathToRead).value();
    EXPECT_EQ(stateOf(pathToRead), before);

    fs::last_write_time(pathToRead, fs::file_time_type::clock::now() + std::chrono::hours(1));

    EXPECT_FALSE(stateOf(pathToRead) == before);
}

TEST(ReadFile, ReturnsEveryByteOfALargeFile) {
    const std::string pattern = repeatingBytes((2U << 20) + 1);
    writeFile(pathToRead, pattern);

    EXPECT_TRUE(wholeContentOf(pathToRead) == pattern);
}

TEST(ReadFile, ReadsAFileWithAReportedSizeOfZero) {
    ASSERT_EQ(fs::file_size("/proc/version"), 0U);

    EXPECT_EQ(wholeContentOf("/proc/version"), run({"cat", "/proc/version"}).out);
}

TEST(ReadFile, ReadsAnEmptyFile) {
    writeFile(pathToRead, "");

    EXPECT_EQ(wholeContentOf(pathToRead), "");
}

TEST(ReadFile, LeavesTheTextUnchangedIfTheFileCannotBeOpened) {
    std::string content = "earlier";

    const FileReading reading = readFile("/tmp/absent", content);

    EXPECT_FALSE(reading.opened);
    EXPECT_EQ(reading.error, ENOENT);
    EXPECT_EQ(content, "earlier");
}

TEST(ReadFile, CutsAFileAtTheLimit) {
    writeFile(pathToRead, "12345");
    std::string content;

    EXPECT_TRUE(readFile(pathToRead, content, {.sizeLimit = 4}).cut);
    EXPECT_EQ(content, "1234");
    EXPECT_FALSE(readFile(pathToRead, content, {.sizeLimit = 5}).cut);
    EXPECT_EQ(content, "12345");
}

TEST(ReadFile, ReturnsTheTextBeforeAFailedRead) {
    const std::string pattern = repeatingBytes(100000);
    writeFile(pathToRead, pattern);

    const Outcome outcome =
        probeInjected({.faults = {"read:error=EIO:when=2"}, .path = pathToRead, .inChildren = true},
                      {"readFile", pathToRead});

    EXPECT_EQ(outcome.out, pattern.substr(0, 65536) + "\n");
    EXPECT_EQ(outcome.err, "Error while reading /tmp/input: Input/output error\n");
}

TEST(ReadFileBitByBit, EndsAtItsTimeOutAndKeepsTheReceivedText) {
    writeFile(pathToRead, repeatingBytes(4U << 20));

    const Outcome outcome =
        probeInjected({.faults = {"read:delay_exit=200000"}, .path = pathToRead, .inChildren = true},
                      {"readFile", pathToRead});

    EXPECT_EQ(outcome.err, "Error while reading /tmp/input: Connection timed out\n");
    EXPECT_LT(outcome.out.size(), 4U << 20);
    EXPECT_GT(outcome.out.size(), 65536U);
}

TEST(ReadFile, ReadsInThisProcessIfNoHelperCanBeStarted) {
    writeFile(pathToRead, "all of it");

    const Outcome outcome = probeInjected({.faults = {"clone:error=EAGAIN"}}, {"readFile", pathToRead});

    EXPECT_EQ(outcome.out, "all of it\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(ReadFile, StartsAnotherHelperIfTheFirstWasKilled) {
    writeFile(pathToRead, "content");
    EXPECT_EQ(wholeContentOf(pathToRead), "content");

    dismissFileHelper();

    EXPECT_EQ(wholeContentOf(pathToRead), "content");
}

TEST(ReportReading, PrintsTheFailure) {
    const struct {
        FileReading reading;
        std::string report;
    } cases[] = {
        {{.opened = true}, ""},
        {{.error = ENOENT}, "Error while opening PATH\n"},
        {{.error = ETIMEDOUT}, "Error while reading PATH: Connection timed out\n"},
        {{.opened = true, .error = EIO}, "Error while reading PATH: Input/output error\n"},
        {{.opened = true, .cut = true}, "PATH is larger than 7 bytes, cut\n"},
    };
    OutputCapture console;
    for (const auto& [reading, report] : cases) {
        reportReading("PATH", reading, {.sizeLimit = 7});
        EXPECT_EQ(console.err(), report);
    }
}

}  // namespace
