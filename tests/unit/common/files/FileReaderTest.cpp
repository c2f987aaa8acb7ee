#include <gtest/gtest.h>
#include <sys/stat.h>

#include "FileReader.hpp"
#include "OutputCapture.hpp"
#include "TestFiles.hpp"

using namespace Korvel;

namespace {

constexpr const char* fileToRead = "/tmp/file";

/// A small file, and the errors about it.
class FileReader : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(console.out(), "");
        EXPECT_EQ(console.err(), expectedReport);
    }

    void expectReport(const std::string& report) { expectedReport = report; }

    OutputCapture console;
    std::string expectedReport;
};

using ReadFileToString = FileReader;
using GetNumberOfLinesInFile = FileReader;
using ReadFileFromLine = FileReader;

TEST_F(ReadFileToString, ReturnsEveryByte) {
    const std::string content("one\n\0two\r\n\xff", 11);
    writeFile(fileToRead, content);

    EXPECT_EQ(readFileToString(fileToRead), content);
}

TEST_F(ReadFileToString, ReturnsAnEmptyTextForAnEmptyFile) {
    writeFile(fileToRead, "");

    EXPECT_EQ(readFileToString(fileToRead), "");
}

TEST_F(ReadFileToString, ReportsAFileThatCannotBeOpened) {
    EXPECT_EQ(readFileToString("/tmp/absent"), "");

    expectReport("Error while opening /tmp/absent\n");
}

TEST_F(ReadFileToString, DoesNotWaitForTheWriterOfAFifo) {
    ASSERT_EQ(::mkfifo("/tmp/fifo", S_IRUSR | S_IWUSR), 0);

    EXPECT_EQ(readFileToString("/tmp/fifo"), "");

    expectReport("Error while opening /tmp/fifo\n");
}

TEST_F(GetNumberOfLinesInFile, CountsLineEnds) {
    const struct {
        std::string content;
        unsigned lines;
    } cases[] = {{"", 0}, {"one", 0}, {"one\n", 1}, {"one\ntwo", 1}, {"one\n\ntwo\n", 3}, {"\n", 1}};
    for (const auto& [content, lines] : cases) {
        SCOPED_TRACE(content);
        writeFile(fileToRead, content);
        EXPECT_EQ(getNumberOfLinesInFile(fileToRead), lines);
    }
}

TEST_F(GetNumberOfLinesInFile, ReportsAFileThatCannotBeOpened) {
    EXPECT_EQ(getNumberOfLinesInFile("/tmp/absent"), 0U);

    expectReport("Error while opening /tmp/absent\n");
}

TEST_F(ReadFileFromLine, CountsLinesFromZero) {
    writeFile(fileToRead, "zero\none\n\nthree\n");

    EXPECT_EQ(readFileFromLine(fileToRead, 0), "zero\none\n\nthree\n");
    EXPECT_EQ(readFileFromLine(fileToRead, 1), "one\n\nthree\n");
    EXPECT_EQ(readFileFromLine(fileToRead, 2), "\nthree\n");
    EXPECT_EQ(readFileFromLine(fileToRead, 3), "three\n");
}

TEST_F(ReadFileFromLine, IsEmptyRightAfterTheLastLine) {
    writeFile(fileToRead, "zero\none\n");

    EXPECT_EQ(readFileFromLine(fileToRead, 2), "");
}

TEST_F(ReadFileFromLine, IsEmptyBeyondTheEnd) {
    writeFile(fileToRead, "zero\none");

    EXPECT_EQ(readFileFromLine(fileToRead, 2), "");
    EXPECT_EQ(readFileFromLine(fileToRead, 4000000000U), "");
}

TEST_F(ReadFileFromLine, ReturnsALastLineWithoutALineEnd) {
    writeFile(fileToRead, "zero\none");

    EXPECT_EQ(readFileFromLine(fileToRead, 1), "one");
}

TEST_F(ReadFileFromLine, IsEmptyForAnEmptyFile) {
    writeFile(fileToRead, "");

    EXPECT_EQ(readFileFromLine(fileToRead, 0), "");
    EXPECT_EQ(readFileFromLine(fileToRead, 1), "");
}

TEST_F(ReadFileFromLine, ReportsAFileThatCannotBeOpened) {
    EXPECT_EQ(readFileFromLine("/tmp/absent", 3), "");

    expectReport("Error while opening /tmp/absent\n");
}

}  // namespace
