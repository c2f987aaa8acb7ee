#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "ProgramTree.hpp"
#include "TextFile.hpp"

using Boardsim::ProgramTree;

TEST(ProgramTreeTest, IsTheBuildFolderOrTheInstallationsPrefix) {
    const struct {
        const char* program;
        const char* onHost;
        const char* onBoard;
        const char* programsOnBoard;
        const char* programInTree;
    } cases[] = {
        {"/home/me/build/boardsim", "/home/me/build", "/opt/korvel", "/opt/korvel", "boardsim"},
        {"/opt/tools/bin/boardsim", "/opt/tools", "/opt/korvel", "/opt/korvel/bin", "bin/boardsim"},
        {"/usr/local/bin/boardsim", "/usr/local", "/usr/local", "/usr/local/bin", "bin/boardsim"},
        {"/usr/bin/boardsim", "/usr", "/usr", "/usr/bin", "bin/boardsim"},
        {"/bin/boardsim", "/", "/", "/bin", "bin/boardsim"},
        {"/usr/src/build/boardsim", "/usr/src/build", "/opt/korvel", "/opt/korvel", "boardsim"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.program);
        const ProgramTree tree{each.program};
        EXPECT_EQ(tree.onHost(), each.onHost);
        EXPECT_EQ(tree.onBoard(), each.onBoard);
        EXPECT_EQ(tree.programsOnBoard(), each.programsOnBoard);
        EXPECT_EQ(tree.programInTree(), each.programInTree);
    }
}

TEST(ProgramTreeTest, ShowsTheWholeTreeOrOnlyItsOwnFoldersOfARootFileSystem) {
    const std::vector<std::filesystem::path> all{""};
    EXPECT_EQ(ProgramTree{"/home/me/build/boardsim"}.folders(), all);
    EXPECT_EQ(ProgramTree{"/usr/bin/boardsim"}.folders(), all);

    const auto folders = ProgramTree{"/bin/boardsim"}.folders();
    ASSERT_EQ(folders.size(), 4);
    EXPECT_EQ(folders.front(), "bin");
    EXPECT_EQ(folders.at(1).filename(), "korvel");
    EXPECT_EQ(folders.at(2), "libexec/korvel/board");
    EXPECT_EQ(folders.back(), "share/man");
}

TEST(ProgramTreeTest, RewritesOnlyACommandWithinIt) {
    namespace fs = std::filesystem;
    fs::create_directories("/tmp/tree/tests");
    fs::create_directories("/tmp/treehouse");
    fs::create_directory_symlink("/tmp/tree", "/tmp/link");
    fs::current_path("/tmp");
    const ProgramTree tree{"/tmp/tree/boardsim"};
    const struct {
        const char* command;
        const char* onBoard;
    } cases[] = {
        {"korvel", "korvel"},
        {"/tmp/tree/korvel", "/opt/korvel/korvel"},
        {"/tmp/tree/tests/a_test", "/opt/korvel/tests/a_test"},
        {"/tmp/tree/tests/../korvel", "/opt/korvel/korvel"},
        {"tree/korvel", "/opt/korvel/korvel"},
        {"./tree/korvel", "/opt/korvel/korvel"},
        {"/tmp/link/korvel", "/opt/korvel/korvel"},
        {"/tmp/treehouse/korvel", "/tmp/treehouse/korvel"},
        {"/tmp/tree/missing/korvel", "/tmp/tree/missing/korvel"},
        {"/usr/bin/env", "/usr/bin/env"},
        {"./x", "./x"},
    };
    for (const auto& [command, onBoard] : cases) {
        SCOPED_TRACE(command);
        EXPECT_EQ(tree.commandOnBoard(command), onBoard);
    }
}
