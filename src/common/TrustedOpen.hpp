#pragma once

#include <string>

#include "UniqueFd.hpp"

namespace Korvel {

/// Opens `path` for writing behind what is in it, creating the file where there is none. Empty with errno
/// set where that fails.
///
/// Never waits (a FIFO or a socket fails) and never falls for what another user planted in a shared folder:
/// a symbolic link on the way, or the file itself, must belong to the caller or to root, else the reason is
/// EACCES. The way is walked by descriptors, so that nothing can be swapped between look and open.
UniqueFd openTrusted(const std::string& path);

}  // namespace Korvel
