#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Boardsim {

/// The directory tree with boardsim and korvel (a build directory or an installation prefix), and its place
/// on the board. If libraries or commands are installed outside the prefix, the tree starts further up,
/// possibly at /.
class ProgramTree {
public:
    /// `program` is the path of this program, without symbolic links. The tree is the program's directory. If
    /// that directory is the one for programs (bin), the tree is the directory above.
    explicit ProgramTree(const std::filesystem::path& program);

    static ProgramTree ofThisProgram();

    const std::filesystem::path& onHost() const { return host; }

    /// /opt/korvel, or the host's path for an installation that cannot move.
    const std::filesystem::path& onBoard() const { return board; }

    /// True if the board's /usr already contains the tree.
    bool isPartOfUsr() const { return host == "/usr" || host == "/usr/local"; }

    /// The parts of the tree that the board sees, as paths relative to the tree. An empty path is the whole
    /// tree. If the tree is a whole file system, only the directories of programs, libraries, commands and
    /// manual pages.
    std::vector<std::filesystem::path> folders() const;

    /// The directory of the tree's programs, and that of the board's shell commands, seen from the board.
    std::filesystem::path programsOnBoard() const { return programs.empty() ? board : board / programs; }
    std::filesystem::path commandsOnBoard() const;

    /// The directory of the manual pages, seen from the board.
    std::filesystem::path pagesOnBoard() const;

    std::filesystem::path programInTree() const { return programs / name; }

    /// If `command` is a path into the tree, its path on the board. Otherwise `command` unchanged.
    std::string commandOnBoard(const std::string& command) const;

private:
    bool isWholeFileSystem() const { return host == "/"; }

    std::filesystem::path host;
    std::filesystem::path board;
    std::filesystem::path programs;  // relative to the tree
    std::filesystem::path name;
};

}  // namespace Boardsim
