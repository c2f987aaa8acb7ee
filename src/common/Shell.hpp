#pragma once

#include <string>

namespace Korvel {

/// Runs a shell command line and waits for its end. The wait status, whatever it tells; below zero, with
/// errno set, where the command could not be run. Nothing is reported.
int runShell(const std::string& commandLine);

/// Runs a shell command line and waits for its end. True when it exited with status 0; anything else is
/// reported on standard error.
bool executeCommand(const std::string& commandLine);

}  // namespace Korvel
