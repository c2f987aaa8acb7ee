#include "FreshBoard.hpp"

#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>
#include <vector>

#include <linux/magic.h>
#include <sys/prctl.h>
#include <sys/statfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// A link that boardsim creates for the sandbox's first process.
constexpr const char* sandboxInit = "/run/boardsim/init";

/// The sandbox's own files are in memory. Programs, libraries and /proc are not.
bool isFolderInMemory(const fs::path& path) {
    struct statfs description {};
    return fs::is_directory(fs::symlink_status(path)) && ::statfs(path.c_str(), &description) == 0 &&
           description.f_type == TMPFS_MAGIC;
}

std::map<fs::path, fs::file_status> filesInMemory() {
    std::map<fs::path, fs::file_status> found;
    const auto options = fs::directory_options::skip_permission_denied;
    for (auto each = fs::recursive_directory_iterator("/", options); each != fs::end(each); ++each) {
        const fs::file_status status = each->symlink_status();
        found.emplace(each->path(), status);
        if (fs::is_directory(status) && !isFolderInMemory(each->path())) {
            each.disable_recursion_pending();
        }
    }
    return found;
}

/// Restores the owner's permissions of folders that a test removed.
void makeAccessible(const fs::path& path) {
    if (!fs::is_directory(fs::symlink_status(path))) {
        return;
    }
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add);
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
        if (fs::is_directory(entry.symlink_status())) {  // and is entered next
            fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add);
        }
    }
}

/// The parent's process id is the second word after the program's name. The name may contain any character.
bool isChild(const fs::path& process) {
    std::string line;
    std::getline(std::ifstream(process / "stat"), line);
    const std::size_t nameEnd = line.rfind(')');
    return nameEnd != std::string::npos && std::stoi(line.substr(nameEnd + 4)) == ::getpid();
}

void killChildren() {
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos && isChild(entry.path())) {
            ::kill(std::stoi(name), SIGKILL);
        }
    }
}

/// The children of a killed process become children of this one.
void endChildren() {
    do {
        killChildren();
    } while (::waitpid(-1, nullptr, 0) > 0 || errno == EINTR);
}

}  // namespace

FreshBoard::FreshBoard() : files(filesInMemory()) {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

bool FreshBoard::isAtHand() {
    return fs::is_symlink(sandboxInit) && isFolderInMemory("/");
}

void FreshBoard::restore() const {
    endChildren();
    layOutFolders();  // with the rights to look into them
    removeOtherFiles();
    layOutFolders();
}

void FreshBoard::layOutFolders() const {
    for (const auto& [path, status] : files) {
        std::error_code inTheWay;
        if (fs::is_directory(status) && (fs::create_directory(path, inTheWay) || isFolderInMemory(path))) {
            fs::permissions(path, status.permissions());
        }
    }
}

void FreshBoard::removeOtherFiles() const {
    for (const auto& [path, status] : filesInMemory()) {
        const auto before = files.find(path);
        if (before == files.end() || before->second.type() != status.type()) {
            makeAccessible(path);
            fs::remove_all(path);
        }
    }
}
