#pragma once

#include <optional>
#include <span>
#include <string>

#include <sys/types.h>

#include "FileState.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// A regular file that is read from start to end, opened under the rules of openTrustedInput(). Files that
/// can block or never end (a FIFO, a socket, a device) and directories fail to open. Does not rely on the
/// file's size, which is meaningless for files like those in /proc.
class InputFile {
public:
    /// Not open.
    InputFile() = default;

    /// Opens `path`. If that fails, isOpen() is false and errno is set. With `owner`, the file must belong to
    /// this user, to root or to the caller, and have no other hard link; otherwise errno is EACCES.
    explicit InputFile(const std::string& path, std::optional<uid_t> owner = std::nullopt);

    bool isOpen() const { return static_cast<bool>(file); }

    /// The state of the file when it was opened.
    const FileState& state() const { return opened; }

    /// Reads the next bytes into `buffer`. Returns their number, 0 at the end, or nothing, with errno set, on
    /// an error.
    std::optional<std::size_t> read(std::span<char> buffer);

private:
    Base::UniqueFd file;
    FileState opened;
};

}  // namespace Korvel
