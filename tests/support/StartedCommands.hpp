#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

// The commands that this test program has started, for the message of a test that fails.

/// Adds a command. It has the environment of this process and also `environment`.
void noteStartedCommand(const std::vector<std::string>& command,
                        const std::map<std::string, std::string>& environment);

/// The latest commands, oldest first, each as a line for a shell.
std::vector<std::string> startedCommands();
