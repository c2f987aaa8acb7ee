#include "TrustedOpen.hpp"

#include <array>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Korvel {
namespace {

constexpr int linkLimit = 40;  // the kernel's own limit, against link cycles
constexpr mode_t newFileMode = 0666;
constexpr int inputFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
constexpr int outputFlags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;

bool isTrustedOwner(uid_t owner) {
    return owner == 0 || owner == ::geteuid();
}

Base::UniqueFd failWith(int reason) {
    errno = reason;
    return {};
}

Base::UniqueFd openEntry(int directory, const std::string& name, int flags) {
    return Base::UniqueFd(Base::uninterrupted(
        [&] { return ::openat(directory, name.c_str(), flags | O_CLOEXEC, newFileMode); }));
}

/// Returns true if the file belongs to the caller and has no other hard link.
bool isExclusivelyOwned(const struct stat& status) {
    return status.st_uid == ::geteuid() && status.st_nlink <= 1;
}

/// Returns true if `name` is the only name of the opened file. A single call finds the file by its name and
/// counts its names, so nobody can remove one in between.
bool hasOnlyName(const struct stat& opened, int directory, const std::string& name) {
    struct stat named {};
    return ::fstatat(directory, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino && named.st_nlink <= 1;
}

/// Returns true if only a trusted user can create names in the folder.
bool isTrustedFolder(int directory) {
    struct stat status {};
    return ::fstat(directory, &status) == 0 && isTrustedOwner(status.st_uid) &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// Everyone can give a link of a trusted user another name, in a folder that they can write to.
bool isTrustedLink(const struct stat& opened, int directory, const std::string& name) {
    return isTrustedOwner(opened.st_uid) &&
           (hasOnlyName(opened, directory, name) || isTrustedFolder(directory));
}

Base::UniqueFd createFile(int directory, const std::string& name) {
    return openEntry(directory, name, outputFlags | O_CREAT | O_EXCL);
}

Base::UniqueFd replaceFile(int directory, const std::string& name) {
    if (::unlinkat(directory, name.c_str(), 0) != 0) {
        return failWith(EACCES);
    }
    return createFile(directory, name);
}

/// Opens an existing file for writing. Checks the opened file, because the name may refer to another one
/// since the first check.
Base::UniqueFd openExisting(int directory, const std::string& name) {
    Base::UniqueFd file = openEntry(directory, name, outputFlags);
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return {};
    }
    if (S_ISCHR(status.st_mode)) {
        return file;
    }
    if (!S_ISREG(status.st_mode)) {
        return failWith(ENXIO);
    }
    const bool exclusive = isExclusivelyOwned(status) && hasOnlyName(status, directory, name);
    return exclusive ? std::move(file) : failWith(EACCES);
}

/// Opens an existing file for reading. Other users can create a hard link to a file that they may not read,
/// if its folder is theirs.
Base::UniqueFd openInput(int directory, const std::string& name) {
    Base::UniqueFd file = openEntry(directory, name, inputFlags);
    struct stat status {};
    struct stat folder {};
    if (!file || ::fstat(file.get(), &status) != 0 || ::fstat(directory, &folder) != 0) {
        return {};
    }
    const bool planted = S_ISREG(status.st_mode) && !isTrustedOwner(folder.st_uid) &&
                         status.st_uid != folder.st_uid && !hasOnlyName(status, directory, name);
    return planted ? failWith(EACCES) : std::move(file);
}

/// Returns the target of the link with this O_PATH descriptor, or an empty string with errno set.
std::string linkTarget(int link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlinkat(link, "", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        errno = length < 0 ? errno : ENAMETOOLONG;
        return {};
    }
    return {target.data(), static_cast<std::size_t>(length)};
}

/// Walks a path name by name. The remaining path is a string, because a link's target is inserted before it.
class PathWalk {
public:
    explicit PathWalk(const std::string& path) : rest(path) { start(); }

    /// Opens the last name of the path. Passes to `open` the descriptor of the parent directory, the name,
    /// and the status of the existing file, which is never a link, or null.
    template <typename Open>
    Base::UniqueFd openLast(Open open) {
        while (directory) {
            const std::string name = nextName();
            Base::UniqueFd entry = openEntry(directory.get(), name, O_PATH | O_NOFOLLOW);
            struct stat status {};
            if (entry && ::fstat(entry.get(), &status) != 0) {
                return {};
            }
            if (entry && S_ISLNK(status.st_mode)) {
                if (!followLink(entry.get(), name, status)) {
                    return {};
                }
            } else if (rest.empty()) {
                return open(directory.get(), name, entry ? &status : nullptr);
            } else {
                directory = std::move(entry);
            }
        }
        return {};
    }

private:
    /// Starts at the root or at the working directory, and restarts at the root after an absolute link.
    void start() {
        const bool absolute = rest.starts_with('/');
        if (absolute || !directory) {
            directory = openEntry(AT_FDCWD, absolute ? "/" : ".", O_PATH | O_DIRECTORY);
        }
    }

    std::string nextName() {
        rest.erase(0, rest.find_first_not_of('/'));
        const std::string name = rest.substr(0, rest.find('/'));
        rest.erase(0, name.size());
        return name;
    }

    bool followLink(int link, const std::string& name, const struct stat& status) {
        if (!isTrustedLink(status, directory.get(), name)) {
            errno = EACCES;
            return false;
        }
        if (++links > linkLimit) {
            errno = ELOOP;
            return false;
        }
        const std::string target = linkTarget(link);
        rest = target + rest;
        start();
        return !target.empty() && directory;
    }

    std::string rest;
    Base::UniqueFd directory;
    int links = 0;
};

}  // namespace

Base::UniqueFd openTrusted(const std::string& path, SharedFile shared) {
    return PathWalk(path).openLast(
        [shared](int directory, const std::string& name, const struct stat* existing) {
            if (existing == nullptr) {
                return errno == ENOENT ? createFile(directory, name) : Base::UniqueFd();
            }
            if (!S_ISREG(existing->st_mode) || isExclusivelyOwned(*existing)) {
                return openExisting(directory, name);
            }
            return shared == SharedFile::replace ? replaceFile(directory, name) : failWith(EACCES);
        });
}

Base::UniqueFd openTrustedInput(const std::string& path) {
    return PathWalk(path).openLast([](int directory, const std::string& name, const struct stat* /*there*/) {
        return openInput(directory, name);
    });
}

Base::UniqueFd openTrustedFolder(const std::string& path) {
    return PathWalk(path).openLast([](int directory, const std::string& name, const struct stat* /*there*/) {
        return openEntry(directory, name, inputFlags | O_DIRECTORY);
    });
}

}  // namespace Korvel
