// The copy of one dump as a separate operation.

#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Printed.hpp"
#include "TestFiles.hpp"
#include "TiLogCollector.hpp"

namespace fs = std::filesystem;
using Korvel::TiLogCollector;

namespace {

class CopyDumpFileToWorkspace : public testing::Test {
protected:
    static constexpr const char* source = "/tmp/source.log";
    static constexpr const char* destination = "/tmp/copies/destination.log";

    CopyDumpFileToWorkspace() {
        fs::remove_all("/tmp/copies");
        fs::create_directory("/tmp/copies");
        writeFile(source, "content");
    }

    /// Copies a dump. The copy must report nothing and must not change the source, with any result.
    static bool copy() {
        bool copied = false;
        EXPECT_EQ(printedBy([&] { copied = TiLogCollector::copyDumpFileToWorkspace(source, destination); }),
                  Printed{});
        return copied;
    }
};

TEST_F(CopyDumpFileToWorkspace, IsTrueForAWholeCopyInPlaceOfAnEarlierOne) {
    writeFile(destination, "an earlier copy");

    EXPECT_TRUE(copy());

    EXPECT_EQ(contentOfFile(destination), "content");
    EXPECT_EQ(contentOfFile(source), "content");
}

TEST_F(CopyDumpFileToWorkspace, IsTrueForAnEmptySource) {
    writeFile(source, "");

    EXPECT_TRUE(copy());

    EXPECT_EQ(contentOfFile(destination), "");
}

TEST_F(CopyDumpFileToWorkspace, IsFalseIfTheSourceCannotBeOpenedAndLeavesTheDestinationAlone) {
    writeFile(destination, "an earlier copy");
    fs::remove(source);
    EXPECT_FALSE(copy());

    fs::create_directory(source);
    EXPECT_FALSE(copy());

    fs::remove(source);
    ASSERT_EQ(::mkfifo(source, 0600), 0);
    EXPECT_FALSE(copy());

    EXPECT_EQ(contentOfFile(destination), "an earlier copy");
}

TEST_F(CopyDumpFileToWorkspace, IsFalseIfTheDestinationCannotBeOpened) {
    fs::create_directory(destination);
    EXPECT_FALSE(copy());

    fs::remove_all("/tmp/copies");
    EXPECT_FALSE(copy());

    EXPECT_EQ(contentOfFile(source), "content");
}

TEST_F(CopyDumpFileToWorkspace, IsFalseIfTheDestinationCannotBeWrittenWhole) {
    fs::create_symlink("/dev/full", destination);

    EXPECT_FALSE(copy());

    EXPECT_EQ(contentOfFile(source), "content");
}

}  // namespace
