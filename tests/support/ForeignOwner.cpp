#include "ForeignOwner.hpp"

#include <cstddef>
#include <iomanip>
#include <span>
#include <sstream>
#include <stdexcept>

#include <sys/stat.h>

namespace {

constexpr uid_t someoneElse = 4711;

/// The start of a status up to its owner (included), in hex.
std::string upToOwner(const struct stat& status) {
    constexpr std::size_t length = offsetof(struct stat, st_uid) + sizeof status.st_uid;
    std::ostringstream hex;
    hex << std::hex << std::setfill('0');
    for (const std::byte each : std::as_bytes(std::span(&status, 1)).first(length)) {
        hex << std::setw(2) << std::to_integer<unsigned>(each);
    }
    return hex.str();
}

}  // namespace

Injection foreignOwnerOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        throw std::runtime_error("nothing at " + path);
    }
    status.st_uid = someoneElse;
    // For a link, only the first call counts. strace treats the target of a link as the same path.
    const std::string when = S_ISLNK(status.st_mode) ? ":when=1" : "";
    return {.faults = {"newfstatat:poke_exit=@arg3=" + upToOwner(status) + when}, .path = path};
}
