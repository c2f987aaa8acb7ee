#pragma once

#include <string>

#include "UniqueFd.hpp"

namespace Korvel {

// Opening files in folders that other users can write to. No call waits (a FIFO or a socket fails), and none
// follows a symbolic link that belongs neither to the caller nor to root: the reason is then EACCES. The way
// is walked by descriptors, so that nothing can be swapped between look and open. A descriptor is empty, with
// errno set, where opening fails.

/// What is done about a regular file that is not the caller's alone: another user's, or one with several
/// names.
enum class SharedFile {
    replace,  ///< its name is removed and a new file created
    refuse,   ///< EACCES
};

/// Opens `path` for writing behind what is in it, and creates the file where there is none.
Base::UniqueFd openTrusted(const std::string& path, SharedFile shared = SharedFile::replace);

/// Opens `path` for reading, whoever the file belongs to.
Base::UniqueFd openTrustedInput(const std::string& path);

/// Opens the folder `path`.
Base::UniqueFd openTrustedFolder(const std::string& path);

}  // namespace Korvel
