#include <filesystem>

#include <gtest/gtest.h>

#include "RootFileSystem.hpp"
#include "TestFiles.hpp"

using Korvel::liesOnRootFileSystem;

namespace {

namespace fs = std::filesystem;

// On the board of a test, /rom is a folder of the root file system, and /tmp is a separate disk.

TEST(LiesOnRootFileSystem, DistinguishesTheRootFileSystemFromOthers) {
    EXPECT_TRUE(liesOnRootFileSystem("/"));
    EXPECT_TRUE(liesOnRootFileSystem("/rom/private"));
    EXPECT_FALSE(liesOnRootFileSystem("/tmp"));
    EXPECT_FALSE(liesOnRootFileSystem("/tmp/absent"));
    EXPECT_FALSE(liesOnRootFileSystem("/proc/self/status"));
}

TEST(LiesOnRootFileSystem, IsTrueIfTheLastPartOfThePathIsMissing) {
    EXPECT_TRUE(liesOnRootFileSystem("/rom/private/absent"));
}

TEST(LiesOnRootFileSystem, FollowsLinks) {
    writeFile("/tmp/file", "");
    fs::remove("/rom/private/link");
    fs::create_symlink("/tmp/file", "/rom/private/link");

    EXPECT_FALSE(liesOnRootFileSystem("/rom/private/link"));
}

TEST(LiesOnRootFileSystem, IsFalseForARelativePath) {
    EXPECT_FALSE(liesOnRootFileSystem("rom/private"));
    EXPECT_FALSE(liesOnRootFileSystem(""));
}

}  // namespace
