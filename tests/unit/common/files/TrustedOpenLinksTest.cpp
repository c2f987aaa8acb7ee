#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include "ForeignOwner.hpp"
#include "Probe.hpp"
#include "TestFiles.hpp"
#include "TrustedOpen.hpp"

using Korvel::openTrusted;

namespace {

namespace fs = std::filesystem;

/// A folder /tmp/folder with a file `target`, and links that the test creates.
class OpenTrustedLinks : public testing::Test {
protected:
    OpenTrustedLinks() { writeFile("/tmp/folder/target", "content"); }

    static void link(const std::string& path, const std::string& target) { fs::create_symlink(target, path); }

    /// The target of a path, or the error if it has none.
    static std::string placeBehind(const std::string& path) {
        const Base::UniqueFd file = openTrusted(path);
        return file ? fs::read_symlink("/proc/self/fd/" + std::to_string(file.get())) : std::strerror(errno);
    }
};

TEST_F(OpenTrustedLinks, AreFollowedToAbsolutePaths) {
    link("/tmp/link", "/tmp/folder/target");

    EXPECT_EQ(placeBehind("/tmp/link"), "/tmp/folder/target");
}

TEST_F(OpenTrustedLinks, AreFollowedToRelativePathsFromTheirOwnFolder) {
    fs::create_directory("/tmp/folder/below");
    link("/tmp/folder/below/up", "../target");
    link("/tmp/folder/beside", "target");

    EXPECT_EQ(placeBehind("/tmp/folder/below/up"), "/tmp/folder/target");
    EXPECT_EQ(placeBehind("/tmp/folder/beside"), "/tmp/folder/target");
}

TEST_F(OpenTrustedLinks, AreFollowedFromTheWorkingDirectory) {
    fs::current_path("/tmp/folder");
    link("beside", "target");

    EXPECT_EQ(placeBehind("beside"), "/tmp/folder/target");
}

TEST_F(OpenTrustedLinks, AreFollowedInTheMiddleOfAPath) {
    link("/tmp/absolute", "/tmp/folder");
    link("/tmp/relative", "folder/");

    EXPECT_EQ(placeBehind("/tmp/absolute/target"), "/tmp/folder/target");
    EXPECT_EQ(placeBehind("/tmp/relative/target"), "/tmp/folder/target");
}

TEST_F(OpenTrustedLinks, AreFollowedFromLinkToLink) {
    link("/tmp/first", "second");
    link("/tmp/second", "/tmp/third");
    link("/tmp/third", "folder/target");

    EXPECT_EQ(placeBehind("/tmp/first"), "/tmp/folder/target");
}

TEST_F(OpenTrustedLinks, HaveTheirMissingTargetCreated) {
    link("/tmp/dangling", "folder/new");

    EXPECT_EQ(placeBehind("/tmp/dangling"), "/tmp/folder/new");
}

TEST_F(OpenTrustedLinks, FailIfTheFolderOfTheirTargetIsMissing) {
    link("/tmp/dangling", "absent/new");

    EXPECT_EQ(placeBehind("/tmp/dangling"), "No such file or directory");
}

TEST_F(OpenTrustedLinks, FailIfTheyPointToEachOther) {
    link("/tmp/ping", "pong");
    link("/tmp/pong", "ping");

    EXPECT_EQ(placeBehind("/tmp/ping"), "Too many levels of symbolic links");
    EXPECT_EQ(placeBehind("/tmp/ping/file"), "Too many levels of symbolic links");
}

TEST_F(OpenTrustedLinks, AreFollowedUpToTheSystemsLimit) {
    link("/tmp/1", "folder/target");
    for (int i = 2; i <= 41; ++i) {
        link("/tmp/" + std::to_string(i), std::to_string(i - 1));
    }

    EXPECT_EQ(placeBehind("/tmp/40"), "/tmp/folder/target");
    EXPECT_EQ(placeBehind("/tmp/41"), "Too many levels of symbolic links");
}

TEST_F(OpenTrustedLinks, AreFollowedToADevice) {
    link("/tmp/link", "/dev/full");

    EXPECT_EQ(placeBehind("/tmp/link"), "/dev/full");
}

TEST_F(OpenTrustedLinks, MayHaveALongTarget) {
    std::string target = "folder";
    while (target.size() < 4000) {
        target += "/../folder";
    }
    link("/tmp/link", target + "/target");

    EXPECT_EQ(placeBehind("/tmp/link"), "/tmp/folder/target");
}

/// Everyone can give another name to a link of root, and so lead root there.
TEST_F(OpenTrustedLinks, AreRefusedIfTheyHaveAnotherName) {
    link("/tmp/folder/link", "/tmp/folder/target");
    fs::create_hard_link("/tmp/folder/link", "/tmp/planted");

    EXPECT_EQ(placeBehind("/tmp/planted"), "Permission denied");
}

/// Other users can remove a name between two looks at a link.
TEST_F(OpenTrustedLinks, AreRefusedIfTheirOtherNameWasHiddenAtFirst) {
    link("/tmp/folder/link", "/tmp/folder/target");
    fs::create_hard_link("/tmp/folder/link", "/tmp/planted");

    const Outcome outcome = probeInjected(onlyNameAtFirst("/tmp/planted"), {"openTrusted", "/tmp/planted"});

    EXPECT_EQ(outcome.out, "Permission denied\n");
}

/// Some root file systems are made of hard links, also of symbolic links.
TEST_F(OpenTrustedLinks, AreFollowedWithAnotherNameIfNobodyElseCanCreateNamesInTheFolder) {
    link("/tmp/folder/link", "target");
    fs::create_hard_link("/tmp/folder/link", "/tmp/folder/other");

    fs::permissions("/tmp/folder", fs::perms(0755));
    EXPECT_EQ(placeBehind("/tmp/folder/other"), "/tmp/folder/target");
    for (const unsigned writable : {0775U, 0757U, 01777U}) {
        fs::permissions("/tmp/folder", fs::perms(writable));
        EXPECT_EQ(placeBehind("/tmp/folder/other"), "Permission denied");
    }
}

TEST_F(OpenTrustedLinks, AreRefusedIfTheyBelongToAnotherUser) {
    link("/tmp/link", "folder/target");

    const Outcome outcome =
        probeInjected(foreignOwnerOf("/tmp/link"), {"writeDumpFile", "/tmp/link", "text"});

    EXPECT_EQ(outcome.out, "false\n");
    EXPECT_EQ(outcome.err, "Error while opening /tmp/link\n");
    EXPECT_EQ(contentOfFile("/tmp/folder/target"), "content");
}

TEST_F(OpenTrustedLinks, AreRefusedInTheMiddleOfAPathIfTheyBelongToAnotherUser) {
    link("/tmp/link", "folder");

    const Outcome outcome = probeInjected(foreignOwnerOf("/tmp/link"), {"openTrusted", "/tmp/link/target"});

    EXPECT_EQ(outcome.out, "Permission denied\n");
}

TEST_F(OpenTrustedLinks, AreRefusedIfTheyDangleAndBelongToAnotherUser) {
    link("/tmp/link", "folder/new");

    const Outcome outcome = probeInjected(foreignOwnerOf("/tmp/link"), {"openTrusted", "/tmp/link"});

    EXPECT_EQ(outcome.out, "Permission denied\n");
    EXPECT_EQ(filesBelow("/tmp"), std::vector<std::string>{"folder/target"});
}

}  // namespace
