#pragma once

#include <optional>
#include <span>
#include <string>

#include <sys/types.h>

#include "FileState.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// A regular file that is read from start to end, opened under the rules of openTrustedInput(). What could
/// make a reader wait or never ends (a FIFO, a socket, a device) and what has no bytes (a directory) fails to
/// open. Knows nothing of the file's size, which for files like those in /proc says nothing.
class InputFile {
public:
    /// Not open.
    InputFile() = default;

    /// Opens `path`; isOpen() tells whether that worked, errno why not. With `owner`, the file must belong to
    /// this user, to root or to the caller, and have no other name; else the reason is EACCES.
    explicit InputFile(const std::string& path, std::optional<uid_t> owner = std::nullopt);

    bool isOpen() const { return static_cast<bool>(file); }

    /// As it was when it was opened.
    const FileState& state() const { return opened; }

    /// Reads the next bytes into `buffer`: how many there were, 0 at the end, none with errno set on an
    /// error.
    std::optional<std::size_t> read(std::span<char> buffer);

private:
    Base::UniqueFd file;
    FileState opened;
};

}  // namespace Korvel
