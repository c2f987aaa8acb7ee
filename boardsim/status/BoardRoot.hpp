#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include <sys/types.h>

#include "UniqueFd.hpp"

namespace Boardsim {

/// A file of a board exists, but boardsim refuses to read it. what() gives its path and the reason.
class UnreadableFile : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The files of a running board, for a process that does not trust the board: its commands can write anything
/// there. Follows no link out of the board or into a mount of the host. Never waits, and never reads more
/// than the limit. Works as long as this object exists, even after the board has ended.
class BoardRoot {
public:
    /// The root directory of this process. Throws std::system_error.
    explicit BoardRoot(pid_t process);

    /// The content of a regular file; nothing if there is none. Throws UnreadableFile if it is not a regular
    /// file or is larger than `limit` bytes.
    std::optional<std::string> read(const std::string& path, std::size_t limit) const;

    /// The size of a regular file in bytes; nothing if there is none. Throws UnreadableFile.
    std::optional<std::uint64_t> size(const std::string& path) const;

private:
    std::optional<Base::UniqueFd> open(const std::string& path) const;

    Base::UniqueFd root;
};

}  // namespace Boardsim
