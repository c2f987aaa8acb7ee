#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "OutputFile.hpp"
#include "ResourceLimit.hpp"
#include "TestFiles.hpp"

using namespace Korvel;

namespace {

constexpr const char* appendedPath = "/tmp/runtime.log";

class OutputFileAppendTest : public testing::Test {
protected:
    static OutputFile open() { return OutputFile(appendedPath, OutputFile::Mode::append); }
};

TEST_F(OutputFileAppendTest, AppendsToTheExistingText) {
    writeFile(appendedPath, "before, ");
    OutputFile file = open();

    file.write("now");
    file.write(" and then");

    EXPECT_TRUE(file.close());
    EXPECT_EQ(contentOfFile(appendedPath), "before, now and then");
}

TEST_F(OutputFileAppendTest, KeepsTheExistingTextWithoutAWrite) {
    writeFile(appendedPath, "before");

    EXPECT_TRUE(open().close());

    EXPECT_EQ(contentOfFile(appendedPath), "before");
}

TEST_F(OutputFileAppendTest, AppendsToTextThatAnotherProcessWroteMeanwhile) {
    OutputFile file = open();
    OutputFile other = open();

    file.write("one, ");
    other.write("two, ");
    file.write("three");

    EXPECT_EQ(contentOfFile(appendedPath), "one, two, three");
}

TEST_F(OutputFileAppendTest, IsCreatedIfItIsMissing) {
    OutputFile file = open();

    file.write("first");

    EXPECT_TRUE(file.close());
    EXPECT_EQ(contentOfFile(appendedPath), "first");
}

TEST_F(OutputFileAppendTest, WritesNothingAfterItsFirstError) {
    writeFile(appendedPath, "before");
    std::signal(SIGXFSZ, SIG_IGN);
    OutputFile file = open();
    {
        const ResourceLimit smallFiles(RLIMIT_FSIZE, 8);
        file.write("more than fits");
    }
    std::signal(SIGXFSZ, SIG_DFL);

    file.write("and more");

    EXPECT_TRUE(file.hasFailed());
    EXPECT_FALSE(file.close());
    EXPECT_EQ(file.writeError(), EFBIG);
    EXPECT_EQ(contentOfFile(appendedPath), "beforemo");
}

TEST_F(OutputFileAppendTest, IsRefusedIfItCouldBlock) {
    ASSERT_EQ(::mkfifo(appendedPath, 0600), 0);

    EXPECT_FALSE(open().isOpen());
}

}  // namespace
