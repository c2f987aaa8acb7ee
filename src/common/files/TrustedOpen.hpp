#pragma once

#include <string>

#include "UniqueFd.hpp"

namespace Korvel {

// Functions that open files in directories that other users can write to. They never block; for writing, a
// FIFO or a socket fails to open. They follow a symbolic link only if it belongs to the caller or to root. If
// other users can create names in its folder, it must not have another name. Otherwise errno is EACCES. They
// walk the path by descriptors, so that nothing can be replaced between check and open. If opening fails, the
// returned descriptor is empty and errno is set.

/// Treatment of a shared file: a regular file that belongs to another user or has several hard links.
enum class SharedFile {
    replace,  ///< unlink it and create a new file
    refuse,   ///< fail with EACCES
};

/// Opens `path` for appending, and creates the file if it is missing.
Base::UniqueFd openTrusted(const std::string& path, SharedFile shared = SharedFile::replace);

/// Opens `path` for reading; the file may belong to any user. In a folder of another user, a file of somebody
/// else with several hard links is refused with EACCES.
Base::UniqueFd openTrustedInput(const std::string& path);

/// Opens the directory `path`.
Base::UniqueFd openTrustedFolder(const std::string& path);

}  // namespace Korvel
