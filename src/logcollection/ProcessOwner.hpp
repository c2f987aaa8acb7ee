#pragma once

#include <optional>

#include <sys/types.h>

namespace Korvel {

/// Returns the user who owns files that the process creates, or nothing if the process has ended.
std::optional<uid_t> fileOwnerOf(pid_t process);

}  // namespace Korvel
