#pragma once

namespace Korvel {

/// Runs the program at `path` with the null-terminated argument vector `argv` and waits for it. Returns its
/// wait status, or -1, with errno set, if it cannot be started or waited for. Meanwhile, this process ignores
/// SIGINT and SIGQUIT: at a terminal, they are meant for the command. The command starts with the original
/// dispositions of both signals and the original signal mask.
int spawnAndWait(const char* path, const char* const* argv);

}  // namespace Korvel
