#pragma once

#include <optional>
#include <span>
#include <string>

#include "UniqueFd.hpp"

namespace Korvel {

/// A regular file that is read from start to end. Opening never waits: what could make a reader wait or
/// never ends (a FIFO, a socket, a device) and what has no bytes (a directory) fails to open.
/// Knows nothing of the file's size, which for files like those in /proc says nothing.
class InputFile {
public:
    /// Opens `path`; isOpen() tells whether that worked, errno why not.
    explicit InputFile(const std::string& path);

    bool isOpen() const { return static_cast<bool>(file); }

    /// Reads the next bytes into `buffer`: how many there were, 0 at the end, none with errno set on an
    /// error.
    std::optional<std::size_t> read(std::span<char> buffer);

private:
    UniqueFd file;
};

/// Every byte of the file; none with errno set where it cannot be opened. Where reading breaks off, what
/// came before; errno then tells why, and is 0 otherwise.
std::optional<std::string> readWholeFile(const std::string& path);

}  // namespace Korvel
