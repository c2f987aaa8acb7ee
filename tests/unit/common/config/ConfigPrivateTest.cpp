#include <filesystem>

#include "ConfigFixture.hpp"
#include "TestFiles.hpp"

// The private replacement of an executable.

namespace {

namespace fs = std::filesystem;

class CheckForPrivate : public ConfigFixture {
protected:
    static void installPrivate(const std::string& name, fs::perms permissions) {
        writeFile("/rom/private/" + name, "");
        fs::permissions("/rom/private/" + name, permissions);
    }

    static constexpr fs::perms executable = fs::perms::owner_read | fs::perms::owner_exec;
    static constexpr fs::perms plain = fs::perms::owner_read;
};

TEST_F(CheckForPrivate, ReturnsTheReplacement) {
    installPrivate("dispatcher.out", executable);

    EXPECT_EQ(Config::checkForPrivate("/usr/bin/dispatcher.out"), "/rom/private/dispatcher.out");
    EXPECT_EQ(records(), std::vector<std::string>{});
}

TEST_F(CheckForPrivate, ReturnsThePathIfThereIsNoReplacement) {
    EXPECT_EQ(Config::checkForPrivate("/usr/bin/dispatcher.out"), "/usr/bin/dispatcher.out");
    EXPECT_EQ(records(), std::vector<std::string>{});
}

TEST_F(CheckForPrivate, ReturnsThePathAndReportsAReplacementThatIsNotExecutable) {
    installPrivate("dispatcher.out", plain);

    EXPECT_EQ(Config::checkForPrivate("/usr/bin/dispatcher.out"), "/usr/bin/dispatcher.out");
    EXPECT_EQ(records(), std::vector<std::string>{
                             "error: Private /rom/private/dispatcher.out found but missing executable flag"});
}

TEST_F(CheckForPrivate, LooksForTheLastNameOfThePath) {
    installPrivate("x", executable);

    EXPECT_EQ(Config::checkForPrivate("a/b/x"), "/rom/private/x");
    EXPECT_EQ(Config::checkForPrivate("/x"), "/rom/private/x");
}

TEST_F(CheckForPrivate, ReturnsANameWithoutASlashUnchanged) {
    installPrivate("x", executable);

    EXPECT_EQ(Config::checkForPrivate("x"), "x");
    EXPECT_EQ(Config::checkForPrivate(""), "");
}

TEST_F(CheckForPrivate, ReturnsThePathOnASecuredBoard) {
    secureTheBoard();
    installPrivate("x", executable);

    EXPECT_EQ(Config::checkForPrivate("/usr/bin/x"), "/usr/bin/x");
}

TEST(FileExists, FindsAnyKindOfFile) {
    writeFile("/tmp/present", "");
    fs::permissions("/tmp/present", fs::perms::none);
    fs::create_symlink("/tmp/nowhere", "/tmp/dangling");

    EXPECT_TRUE(fileExists("/tmp/present"));
    EXPECT_TRUE(fileExists("/tmp"));
    EXPECT_FALSE(fileExists("/tmp/absent"));
    EXPECT_FALSE(fileExists("/tmp/dangling"));
}

}  // namespace
