#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

// The commands that this test program has started, for the message of a test that fails.

/// Adds a command, which gets `environment` beside that of this process.
void noteStartedCommand(const std::vector<std::string>& command,
                        const std::map<std::string, std::string>& environment);

/// The latest commands, oldest first, each as a line for a shell.
std::vector<std::string> startedCommands();
