#include "TrustedOpen.hpp"

#include <array>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>

#include "SystemCall.hpp"

namespace Korvel {
namespace {

constexpr int linkLimit = 40;  // the kernel's own, against links that point at each other
constexpr mode_t newFileMode = 0666;
constexpr int openFlags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | O_NOFOLLOW;

bool isTrusted(const struct stat& status) {
    return status.st_uid == 0 || status.st_uid == ::geteuid();
}

UniqueFd refuse(int reason) {
    errno = reason;
    return {};
}

UniqueFd openPlace(int directory, const std::string& name, int flags) {
    return UniqueFd(
        uninterrupted([&] { return ::openat(directory, name.c_str(), flags | O_CLOEXEC, newFileMode); }));
}

/// Opens the last name of a path in its folder. It may not be a link.
UniqueFd openFile(int directory, const std::string& name) {
    UniqueFd file = openPlace(directory, name, openFlags);
    if (!file && errno == ENOENT) {
        return openPlace(directory, name, openFlags | O_CREAT | O_EXCL);
    }
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        return {};
    }
    if (!S_ISREG(status.st_mode) && !S_ISCHR(status.st_mode)) {
        return refuse(ENXIO);
    }
    return isTrusted(status) || S_ISCHR(status.st_mode) ? std::move(file) : refuse(EACCES);
}

/// Where the link behind an O_PATH descriptor points; empty with errno set where that cannot be told.
std::string linkTarget(int link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlinkat(link, "", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        errno = length < 0 ? errno : ENAMETOOLONG;
        return {};
    }
    return {target.data(), static_cast<std::size_t>(length)};
}

/// Walks a path name by name; what is left to walk is a text, since a link puts its target before it.
class Walk {
public:
    explicit Walk(const std::string& path) : rest(path) { start(); }

    UniqueFd openLast() {
        while (directory) {
            const std::string name = nextName();
            UniqueFd entry = openPlace(directory.get(), name, O_PATH | O_NOFOLLOW);
            struct stat status {};
            if (entry && ::fstat(entry.get(), &status) != 0) {
                return {};
            }
            if (entry && S_ISLNK(status.st_mode)) {
                if (!followLink(entry.get(), status)) {
                    return {};
                }
            } else if (rest.empty()) {
                return openFile(directory.get(), name);
            } else {
                directory = std::move(entry);
            }
        }
        return {};
    }

private:
    /// The walk begins at the root or at the working directory, and again so behind an absolute link.
    void start() {
        const bool absolute = rest.starts_with('/');
        if (absolute || !directory) {
            directory = openPlace(AT_FDCWD, absolute ? "/" : ".", O_PATH | O_DIRECTORY);
        }
    }

    std::string nextName() {
        rest.erase(0, rest.find_first_not_of('/'));
        const std::string name = rest.substr(0, rest.find('/'));
        rest.erase(0, name.size());
        return name;
    }

    bool followLink(int link, const struct stat& status) {
        if (!isTrusted(status) || ++links > linkLimit) {
            errno = isTrusted(status) ? ELOOP : EACCES;
            return false;
        }
        const std::string target = linkTarget(link);
        rest = target + rest;
        start();
        return !target.empty() && directory;
    }

    std::string rest;
    UniqueFd directory;
    int links = 0;
};

}  // namespace

UniqueFd openTrusted(const std::string& path) {
    return Walk(path).openLast();
}

}  // namespace Korvel
