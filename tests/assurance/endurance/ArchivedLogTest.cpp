// What ArchivedLog finds in an archive that the test writes itself.

#include <filesystem>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "ArchivedLog.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

class ArchivedLogTest : public testing::Test {
protected:
    ArchivedLogTest() {
        fs::remove_all("/tmp/korvel");
        writeRuntime("");
    }

    void writeRuntime(std::string_view text) const { writeFile(archived.files().runtimePath, text); }

    /// Compresses a piece, as the archiver does.
    static void writePiece(const std::string& path, std::string_view text) {
        writeFile(path, text);
        run({"/bin/gzip", "-f", path});
    }

    std::string_view allOfTheLog() { return log.between(0, log.end()); }

    /// New entries that the archiver is about to read. Returns all that the log has.
    std::string_view produce(std::size_t bytes) {
        log.write(bytes);
        archived.expectRead();
        return allOfTheLog();
    }

    /// Appends `change` of the log's text to runtime.log, and checks that.
    void archive(std::string_view text, bool announced = false) {
        writeRuntime(text);
        archived.check(announced, 0);
    }

    static constexpr std::size_t some = 100'000;  ///< bytes
    static constexpr std::size_t piece = 2097152;

    StreamedLog log{"syslib_log_memory"};
    ArchivedLog archived{log, "syslib"};
};

TEST_F(ArchivedLogTest, AddsUpWhatIsStored) {
    archive(produce(some));
    archive(produce(some));

    const Balance balance = archived.finish();
    EXPECT_EQ(balance.produced, log.end());
    EXPECT_EQ(balance.stored, log.end());
    EXPECT_EQ(balance.lost + balance.dropped, 0U);
}

TEST_F(ArchivedLogTest, FindsAByteThatIsMissing) {
    const std::string_view text = produce(some);
    EXPECT_THROW(archive(text.substr(0, text.size() - 1)), std::runtime_error);
}

TEST_F(ArchivedLogTest, FindsAByteThatIsWrong) {
    std::string text(produce(some));
    text[text.size() / 2] ^= 1;
    EXPECT_THROW(archive(text), std::runtime_error);
}

TEST_F(ArchivedLogTest, FindsEntriesThatAreStoredTwice) {
    archive(produce(some));
    const std::string text(produce(some));
    EXPECT_THROW(archive(text + text.substr(text.size() - some)), std::runtime_error);
}

TEST_F(ArchivedLogTest, FindsALossWithoutAWarning) {
    archive(produce(some));
    const std::string before(allOfTheLog());
    produce(2 * piece);
    const std::string kept(log.between(log.oldest(), log.end()));
    EXPECT_THROW(archive(before + kept), std::runtime_error);
}

TEST_F(ArchivedLogTest, CountsALossWithAWarning) {
    archive(produce(some));
    const std::string before(allOfTheLog());
    produce(2 * piece);
    const std::uint64_t oldest = log.oldest();
    const std::string kept(log.between(oldest, log.end()));
    writePiece(archived.files().startupPath,
               before + "WARNING: Shared memory overlap. Log is missing entries\n" + kept);
    archive("");

    const Balance balance = archived.finish();
    EXPECT_EQ(balance.lost, oldest - before.size());
    EXPECT_EQ(balance.stored, before.size() + kept.size());
    EXPECT_EQ(balance.rotations, 1U);
}

TEST_F(ArchivedLogTest, FindsAPieceThatLacksTheEndOfTheEarlierText) {
    const std::string text(produce(piece - 1));
    writePiece(archived.files().startupPath, text.substr(1));
    EXPECT_THROW(archive(""), std::runtime_error);
}

TEST_F(ArchivedLogTest, FindsARotationThatFailedSilently) {
    EXPECT_THROW(archive(produce(piece + some)), std::runtime_error);
}

TEST_F(ArchivedLogTest, FindsAPieceThatChangesLater) {
    writePiece(archived.files().startupPath, produce(piece - some / 2));
    archive("");
    writePiece(archived.files().startupPath, "other");
    EXPECT_THROW(archived.finish(), std::runtime_error);
}

TEST_F(ArchivedLogTest, CountsAsLostWhatComesAfterAnAnnouncedFailure) {
    const std::string text(produce(some));
    archive(std::string_view(text).substr(0, some / 2), true);
    produce(some);

    EXPECT_TRUE(archived.isIdle());
    const Balance balance = archived.finish();
    EXPECT_EQ(balance.stored, some / 2);
    EXPECT_EQ(balance.lost, log.end() - some / 2);
}

}  // namespace
