#include "ProgramTree.hpp"

namespace fs = std::filesystem;

ProgramTree::ProgramTree(const fs::path& program) : host(program.parent_path()), name(program.filename()) {
    if (host.filename() == "bin") {
        programs = host.filename();
        host = host.parent_path();
    }
    board = host == "/usr" || host == "/usr/local" ? host : "/opt/korvel";
}

ProgramTree ProgramTree::ofThisProgram() {
    return ProgramTree(fs::read_symlink("/proc/self/exe"));
}

fs::path ProgramTree::commandsOnBoard() const {
    return board / BOARDSIM_COMMANDS_DIR;
}

std::string ProgramTree::commandOnBoard(const std::string& command) const {
    if (command.find('/') == std::string::npos) {
        return command;
    }
    // The last name may be a link within the tree; what it points to is the board's matter.
    const fs::path path = fs::absolute(command);
    std::error_code missing;
    const fs::path folder = fs::canonical(path.parent_path(), missing);
    const fs::path below = (folder / path.filename()).lexically_relative(host);
    const bool inTree = !missing && !below.empty() && *below.begin() != "..";
    return inTree ? (board / below).string() : command;
}
