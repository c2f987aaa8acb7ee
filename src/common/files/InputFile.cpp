#include "InputFile.hpp"

#include <fcntl.h>

#include "SystemCall.hpp"
#include "TrustedOpen.hpp"

namespace Korvel {
namespace {

bool belongsTo(const struct stat& status, uid_t owner) {
    return status.st_uid == owner || status.st_uid == 0 || status.st_uid == ::geteuid();
}

/// Returns 0, or an errno value if a file of this state must not be read.
int accessError(const struct stat& status, std::optional<uid_t> owner) {
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    if (!S_ISREG(status.st_mode)) {
        return ENXIO;
    }
    // A user who may not read a file can still create a hard link to it.
    const bool trusted = !owner || (belongsTo(status, *owner) && status.st_nlink <= 1);
    return trusted ? 0 : EACCES;
}

}  // namespace

InputFile::InputFile(const std::string& path, std::optional<uid_t> owner) : file(openTrustedInput(path)) {
    struct stat status {};
    if (!file) {
        return;
    }
    const int reason = ::fstat(file.get(), &status) != 0 ? errno : accessError(status, owner);
    if (reason != 0) {
        file.reset();
        errno = reason;
    }
    opened = FileState(status);
}

std::optional<std::size_t> InputFile::read(std::span<char> buffer) {
    const ssize_t count =
        Base::uninterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count < 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(count);
}

}  // namespace Korvel
