// Tests that leave files and processes behind, in any order. Each of them finds a fresh board, even if the
// whole program runs.

#include <filesystem>

#include <gtest/gtest.h>

#include "Process.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// The same test runs three times. The later two would find the remains of the first.
class LeftBehindTest : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Again, LeftBehindTest, testing::Range(1, 4));

}  // namespace

TEST_P(LeftBehindTest, FilesAreGone) {
    EXPECT_FALSE(fs::exists("/dev/shm/left"));
    EXPECT_FALSE(fs::exists("/var"));

    writeFile("/dev/shm/left", "behind");
    writeFile("/var/log/left", "behind");
}

TEST_P(LeftBehindTest, FoldersWithoutRightsAreGone) {
    EXPECT_FALSE(fs::exists("/tmp/closed"));

    fs::create_directories("/tmp/closed/within/within");
    fs::permissions("/tmp/closed/within", fs::perms::none);
    fs::permissions("/tmp/closed", fs::perms::none);
}

TEST_P(LeftBehindTest, FoldersOfTheBoardAreBackWithTheirRights) {
    EXPECT_EQ(fs::symlink_status("/ffs/run/logs").type(), fs::file_type::directory);
    EXPECT_EQ(fs::symlink_status("/rom/private").type(), fs::file_type::directory);
    EXPECT_EQ(fs::status("/rom/config").permissions(), fs::perms(0755));

    fs::remove_all("/ffs/run");
    writeFile("/ffs/run", "a file in place of a folder");
    fs::remove_all("/rom/private");
    fs::create_directory_symlink("/usr", "/rom/private");
    fs::permissions("/rom/config", fs::perms::none);
}

TEST_P(LeftBehindTest, ProcessesHaveEnded) {
    EXPECT_EQ(run({"pgrep", "-x", "sleep"}), (Outcome{.status = 1, .out = "", .err = ""}));

    run({"sh", "-c", "setsid sleep 1000 > /dev/null 2>&1 &"});
}
