#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <optional>

#include "FileState.hpp"

namespace Korvel {

// A request about a file and its response, in memory that two processes share; therefore without pointers.

struct FileRequest {
    enum class Kind {
        access,  ///< checks access `accessMode` to the file
        state,   ///< reads the file's state
        open,    ///< opens the file for reading, and reads its state
        read,    ///< reads the next piece of the opened file
        close,   ///< closes the opened file
    };

    Kind kind = Kind::close;
    int accessMode = 0;                    ///< for access: as for access()
    std::optional<uid_t> owner = {};       ///< for open: see InputFile
    std::array<char, PATH_MAX> path = {};  ///< zero-terminated; for read and close: that of open

    /// Returns true if the request does not refer to a file that an earlier request opened.
    bool isIndependent() const { return kind != Kind::read && kind != Kind::close; }
};

struct FileResponse {
    int error = 0;         ///< errno value, or 0
    FileState state = {};  ///< for state and open
    std::size_t size = 0;  ///< for read: bytes of the piece; 0 at the end
};

struct FileExchange {
    FileRequest request;
    FileResponse response;
    std::array<char, 65536> piece;
};

}  // namespace Korvel
