#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Boardsim {

/// The folder tree that this program belongs to - a build folder, or the prefix of an installation - and its
/// place on the simulated board. An installation whose libraries or commands are not below its prefix has a
/// tree that starts further up, in the end at the root of the file system.
class ProgramTree {
public:
    /// `program` is the path of this program, without symbolic links. The tree is the folder that it lies
    /// in, or the one above the folder that the build has for programs (bin).
    explicit ProgramTree(const std::filesystem::path& program);

    /// The tree of the running program.
    static ProgramTree ofThisProgram();

    /// Where the tree is on the host.
    const std::filesystem::path& onHost() const { return host; }

    /// Where the tree is on the board: /opt/korvel, or unchanged for an installation that cannot be there.
    const std::filesystem::path& onBoard() const { return board; }

    /// True where the board has the tree anyway, as part of its /usr.
    bool isPartOfUsr() const { return host == "/usr" || host == "/usr/local"; }

    /// What the board sees of the tree, as paths below it: everything (an empty path), or of a whole file
    /// system only the folders of programs, libraries, commands and manual pages.
    std::vector<std::filesystem::path> folders() const;

    /// The folder of the tree's programs, and that of the board's shell commands, seen from the board.
    std::filesystem::path programsOnBoard() const { return programs.empty() ? board : board / programs; }
    std::filesystem::path commandsOnBoard() const;

    /// The folder of the manual pages, seen from the board.
    std::filesystem::path pagesOnBoard() const;

    /// This program's path below the tree.
    std::filesystem::path programInTree() const { return programs / name; }

    /// The path on the board of a command that is given by a path into the tree; any other command
    /// unchanged.
    std::string commandOnBoard(const std::string& command) const;

private:
    bool isWholeFileSystem() const { return host == "/"; }

    std::filesystem::path host;
    std::filesystem::path board;
    std::filesystem::path programs;  // below the tree
    std::filesystem::path name;
};

}  // namespace Boardsim
