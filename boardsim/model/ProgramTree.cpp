#include "ProgramTree.hpp"

namespace Boardsim {

namespace fs = std::filesystem;

namespace {

/// Removes `below` from the end of `folder`. Empty if `folder` does not end so.
fs::path folderAbove(fs::path folder, fs::path below) {
    while (!below.empty() && folder.filename() == below.filename()) {
        folder = folder.parent_path();
        below = below.parent_path();
    }
    return below.empty() ? folder : fs::path();
}

}  // namespace

ProgramTree::ProgramTree(const fs::path& program) : host(program.parent_path()), name(program.filename()) {
    if (const fs::path top = folderAbove(host, BOARDSIM_PROGRAMS_DIR); !top.empty()) {
        programs = BOARDSIM_PROGRAMS_DIR;
        host = top;
    }
    board = isPartOfUsr() || isWholeFileSystem() ? host : "/opt/korvel";
}

ProgramTree ProgramTree::ofThisProgram() {
    return ProgramTree(fs::read_symlink("/proc/self/exe"));
}

std::vector<fs::path> ProgramTree::folders() const {
    if (isWholeFileSystem()) {
        return {programs, BOARDSIM_LIBRARIES_DIR, BOARDSIM_COMMANDS_DIR, BOARDSIM_PAGES_DIR};
    }
    return {fs::path()};
}

fs::path ProgramTree::commandsOnBoard() const {
    return board / BOARDSIM_COMMANDS_DIR;
}

fs::path ProgramTree::pagesOnBoard() const {
    return board / BOARDSIM_PAGES_DIR;
}

std::string ProgramTree::commandOnBoard(const std::string& command) const {
    if (command.find('/') == std::string::npos) {
        return command;
    }
    // The last component is not resolved: it may be a link within the tree.
    const fs::path path = fs::absolute(command);
    std::error_code missing;
    const fs::path folder = fs::canonical(path.parent_path(), missing);
    const fs::path below = (folder / path.filename()).lexically_relative(host);
    const bool inTree = !missing && !below.empty() && *below.begin() != "..";
    return inTree ? (board / below).string() : command;
}

}  // namespace Boardsim
