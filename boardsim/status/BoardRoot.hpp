#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include <sys/types.h>

#include "UniqueFd.hpp"

namespace Boardsim {

/// A file of a board is there and is not to be read. what() names it and the reason.
class UnreadableFile : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The files of a running board, for a process that does not trust it: commands on the board can put there
/// what they like. No link leads out of the board or to what it has of the host, nothing is waited for,
/// and no more is read than was asked for. Can be read for as long as this object lives, even when the board
/// has ended.
class BoardRoot {
public:
    /// The root that this process has. Throws std::system_error.
    explicit BoardRoot(pid_t process);

    /// All that a regular file of the board holds; nothing where there is none. Throws UnreadableFile where
    /// something else is in its place, or it is larger than `limit` bytes.
    std::optional<std::string> read(const std::string& path, std::size_t limit) const;

    /// Its size in bytes. Throws as read() does.
    std::optional<std::uint64_t> size(const std::string& path) const;

private:
    std::optional<Base::UniqueFd> open(const std::string& path) const;

    Base::UniqueFd root;
};

}  // namespace Boardsim
