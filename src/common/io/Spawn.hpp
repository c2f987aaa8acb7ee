#pragma once

namespace Korvel {

/// Runs the program at `path` with the argument vector `argv` (null-terminated) and waits for its end. Its
/// wait status; -1 with errno set where it could not be started or its end not be learned. While it runs,
/// this process ignores SIGINT and SIGQUIT: at a terminal they are the command's. The command gets them, and
/// the signal mask, as this process found them.
int spawnAndWait(const char* path, const char* const* argv);

}  // namespace Korvel
