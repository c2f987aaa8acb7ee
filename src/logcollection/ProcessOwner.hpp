#pragma once

#include <optional>

#include <sys/types.h>

namespace Korvel {

/// The user that the files belong to which a process creates; none where the process is gone.
std::optional<uid_t> ownerOfFilesOf(pid_t process);

}  // namespace Korvel
