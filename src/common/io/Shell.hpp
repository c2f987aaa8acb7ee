#pragma once

#include <string>

namespace Korvel {

/// Runs a shell command line and waits for it. Returns its wait status, or -1, with errno set, if the shell
/// cannot be started or waited for. Reports nothing.
int runShell(const std::string& commandLine);

/// Runs a shell command line and waits for it. Returns true if its exit status is 0; otherwise reports the
/// failure on standard error.
bool executeCommand(const std::string& commandLine);

}  // namespace Korvel
