#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <optional>

#include "FileState.hpp"

namespace Korvel {

// A question about a file and its answer, in memory that two processes share: they hold no pointers.

struct FileQuestion {
    enum class Kind {
        access,  ///< may the caller use the file in the way of `accessMode`?
        state,   ///< what is known of the file?
        open,    ///< opens the file for reading, and asks for its state
        read,    ///< asks for the next piece of the file that was opened
        close,   ///< ends reading
    };

    Kind kind = Kind::close;
    int accessMode = 0;                    ///< of access; as access() takes it
    std::optional<uid_t> owner = {};       ///< of open; see InputFile
    std::array<char, PATH_MAX> path = {};  ///< zero-terminated; that of read and close is open's

    /// Whether it stands by itself, and is not about a file that an earlier one opened.
    bool isFirst() const { return kind != Kind::read && kind != Kind::close; }
};

struct FileAnswer {
    int error = 0;         ///< errno of what failed; 0 where nothing did
    FileState state = {};  ///< to state and open
    std::size_t size = 0;  ///< to read: bytes of the piece; 0 at the end
};

struct FileExchange {
    FileQuestion question;
    FileAnswer answer;
    std::array<char, 65536> piece;
};

}  // namespace Korvel
