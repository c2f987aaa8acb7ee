#pragma once

#include <string>

namespace Korvel {

/// Runs a shell command line and waits for its end. Its wait status; -1, with errno set, where the shell
/// could not be started or its end not be learned. Reports nothing.
int runShell(const std::string& commandLine);

/// Runs a shell command line and waits for its end. True when it exited with status 0; anything else is
/// reported on standard error.
bool executeCommand(const std::string& commandLine);

}  // namespace Korvel
