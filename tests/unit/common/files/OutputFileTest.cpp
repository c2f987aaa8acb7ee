#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>

#include "OutputCapture.hpp"
#include "OutputFile.hpp"
#include "Probe.hpp"
#include "ResourceLimit.hpp"
#include "TestFiles.hpp"

using namespace Korvel;

namespace {

constexpr const char* outputPath = "/tmp/dump.log";

class OutputFileTest : public testing::Test {
protected:
    OutputFile file{outputPath};
};

TEST_F(OutputFileTest, KeepsTheOrderOfItsWrites) {
    file.write("one ");
    file.write("");
    file.write(std::string_view("t\0o", 3));

    EXPECT_TRUE(file.close());
    EXPECT_EQ(contentOfFile(outputPath), std::string("one t\0o", 7));
    EXPECT_EQ(file.writeError(), 0);
}

TEST_F(OutputFileTest, IsEmptiedWhenItIsOpened) {
    file.write("before");
    EXPECT_TRUE(file.close());

    OutputFile again(outputPath);
    EXPECT_TRUE(again.isOpen());
    EXPECT_EQ(contentOfFile(outputPath), "");
}

TEST_F(OutputFileTest, WritesNothingAfterItsFirstError) {
    std::filesystem::create_symlink("/dev/full", "/tmp/full");
    OutputFile full("/tmp/full");
    full.write("text");
    ASSERT_EQ(full.writeError(), ENOSPC);
    std::filesystem::remove("/tmp/full");

    full.write("more");

    EXPECT_FALSE(full.close());
    EXPECT_EQ(full.writeError(), ENOSPC);
}

TEST_F(OutputFileTest, ReportsThatItCannotBeOpened) {
    const OutputFile absent("/tmp/absent/dump.log");

    EXPECT_FALSE(absent.isOpen());
    EXPECT_TRUE(absent.hasFailed());
}

TEST_F(OutputFileTest, IsNotOpenWithoutAPath) {
    OutputFile none;

    EXPECT_FALSE(none.isOpen());
    EXPECT_TRUE(none.hasFailed());
    EXPECT_EQ(none.writeError(), 0);

    none = OutputFile(outputPath);
    EXPECT_TRUE(none.isOpen());
}

TEST_F(OutputFileTest, StaysFailedAfterAFailedWrite) {
    std::filesystem::create_symlink("/dev/full", "/tmp/full");
    OutputFile full("/tmp/full");
    EXPECT_FALSE(full.hasFailed());

    full.write("text");

    EXPECT_TRUE(full.hasFailed());
}

class WriteDumpFile : public testing::Test {
protected:
    OutputCapture console;
};

TEST_F(WriteDumpFile, ReplacesTheExistingText) {
    writeFile(outputPath, "a longer text than the next");

    EXPECT_TRUE(writeDumpFile(outputPath, "text\n"));

    EXPECT_EQ(contentOfFile(outputPath), "text\n");
    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "");
}

TEST_F(WriteDumpFile, WritesALargeText) {
    const std::string text(3U << 20, 'x');

    EXPECT_TRUE(writeDumpFile(outputPath, text));

    EXPECT_TRUE(contentOfFile(outputPath) == text);
}

TEST_F(WriteDumpFile, LeavesAnEmptyFileForAnEmptyText) {
    EXPECT_TRUE(writeDumpFile(outputPath, ""));

    EXPECT_EQ(contentOfFile(outputPath), "");
}

TEST_F(WriteDumpFile, ReportsAFileThatCannotBeOpened) {
    EXPECT_FALSE(writeDumpFile("/tmp/absent/dump.log", "text"));

    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "Error while opening /tmp/absent/dump.log\n");
}

TEST_F(WriteDumpFile, ReportsAFullDiskOnce) {
    std::filesystem::create_symlink("/dev/full", outputPath);

    EXPECT_FALSE(writeDumpFile(outputPath, std::string(1U << 20, 'x')));

    EXPECT_EQ(console.err(), "Error while writing /tmp/dump.log: No space left on device\n");
}

TEST_F(WriteDumpFile, ContinuesAfterAShortWriteAndReportsTheNextFailure) {
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const ResourceLimit smallFiles(RLIMIT_FSIZE, 1000);
        EXPECT_FALSE(writeDumpFile(outputPath, std::string(2000, 'x')));
    }
    std::signal(SIGXFSZ, SIG_DFL);

    EXPECT_EQ(contentOfFile(outputPath), std::string(1000, 'x'));
    EXPECT_EQ(console.err(), "Error while writing /tmp/dump.log: File too large\n");
}

/// The same in a process with failing system calls on the file.
class WriteDumpFileUnderFaults : public testing::Test {
protected:
    static Outcome writeUnder(const std::string& fault) {
        writeFile(outputPath, "before");
        return probeInjected({.faults = {fault}, .path = outputPath}, {"writeDumpFile", outputPath, "text"});
    }
};

TEST_F(WriteDumpFileUnderFaults, ContinuesAfterASignal) {
    for (const std::string call : {"write", "ftruncate"}) {
        SCOPED_TRACE(call);
        const Outcome outcome = writeUnder(call + ":error=EINTR:when=1");

        EXPECT_EQ(outcome.out, "true\n");
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(contentOfFile(outputPath), "text");
    }
}

TEST_F(WriteDumpFileUnderFaults, ReportsAWriteThatMakesNoProgress) {
    const Outcome outcome = writeUnder("write:retval=0");

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err, "Error while writing /tmp/dump.log: Input/output error\n");
}

TEST_F(WriteDumpFileUnderFaults, ReportsAFailedCloseAsAFailedWrite) {
    // The first close is of the descriptor that was used to find the file.
    const Outcome outcome = writeUnder("close:error=EDQUOT:when=2");

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err, "Error while writing /tmp/dump.log: Disk quota exceeded\n");
}

TEST_F(WriteDumpFileUnderFaults, TreatsAnInterruptedCloseAsDone) {
    const Outcome outcome = writeUnder("close:error=EINTR");

    EXPECT_EQ(outcome.out, "true\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(WriteDumpFileUnderFaults, ReportsAFailedTruncationAsAFailedOpen) {
    const Outcome outcome = writeUnder("ftruncate:error=EPERM");

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err, "Error while opening /tmp/dump.log\n");
    EXPECT_EQ(contentOfFile(outputPath), "before");
}

}  // namespace
