#include "BoardRoot.hpp"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

struct stat statusOf(const Base::UniqueFd& file, const std::string& path) {
    struct stat status {};
    Base::checked(::fstat(file.get(), &status), path);
    return status;
}

}  // namespace

BoardRoot::BoardRoot(pid_t process)
    : root(Base::checked(
          ::open(("/proc/" + std::to_string(process) + "/root").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC),
          "cannot look into a board")) {
}

std::optional<std::string> BoardRoot::read(const std::string& path, std::size_t limit) const {
    const std::optional<Base::UniqueFd> file = open(path);
    if (!file) {
        return std::nullopt;
    }
    std::string text = readBeginning(file->get(), limit + 1);
    if (text.size() > limit) {
        throw UnreadableFile(path + " is larger than " + std::to_string(limit) + " bytes");
    }
    return text;
}

std::optional<std::uint64_t> BoardRoot::size(const std::string& path) const {
    const std::optional<Base::UniqueFd> file = open(path);
    return file ? std::optional(static_cast<std::uint64_t>(statusOf(*file, path).st_size)) : std::nullopt;
}

/// Stays in one mount: files in /proc are not real files, and files in /usr belong to the host.
std::optional<Base::UniqueFd> BoardRoot::open(const std::string& path) const {
    open_how how{};
    how.flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    how.resolve = RESOLVE_IN_ROOT | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
    Base::UniqueFd file(static_cast<int>(::syscall(SYS_openat2, root.get(), path.c_str(), &how, sizeof how)));
    if (file.get() == -1 && errno == ENOENT) {
        return std::nullopt;
    }
    if (file.get() == -1) {
        throw UnreadableFile(path + ": " + std::generic_category().message(errno));
    }
    if (!S_ISREG(statusOf(file, path).st_mode)) {
        throw UnreadableFile(path + " is not a regular file");
    }
    return file;
}

}  // namespace Boardsim
