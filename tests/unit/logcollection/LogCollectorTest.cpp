// The common part of all collectors: a directory.

#include <filesystem>

#include <gtest/gtest.h>

#include "BoardCommand.hpp"
#include "LogCollector.hpp"
#include "Printed.hpp"
#include "TestFiles.hpp"

namespace {

class IdleCollector : public Korvel::LogCollector {
public:
    using LogCollector::LogCollector;
    bool collectLogs(bool /*printRequested*/) override { return true; }
    bool printOnConsole() override { return true; }
    bool dumpToFiles() override { return true; }
};

}  // namespace

TEST(LogCollectorTest, CreatesItsDirectoryWithAllParents) {
    EXPECT_EQ(printedBy([] { const IdleCollector collector("/tmp/a/b/c"); }), Printed{});

    EXPECT_TRUE(std::filesystem::is_directory("/tmp/a/b/c"));
}

TEST(LogCollectorTest, AcceptsAnExistingDirectory) {
    writeFile("/tmp/a/kept.log", "kept");

    EXPECT_EQ(printedBy([] { const IdleCollector collector("/tmp/a"); }), Printed{});

    EXPECT_EQ(contentOfFile("/tmp/a/kept.log"), "kept");
}

TEST(LogCollectorTest, ReportsADirectoryThatCannotBeCreatedAndContinues) {
    const BoardCommand mkdir("mkdir", "exit 1");

    EXPECT_EQ(printedBy([] { const IdleCollector collector("/tmp/a/b"); }),
              (Printed{.err = "Command: mkdir -p /tmp/a/b exited with error, exit code: 1\n"}));
}
