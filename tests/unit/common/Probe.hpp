#pragma once

#include <string>
#include <vector>

#include "Injection.hpp"
#include "Process.hpp"

// One function of the room in a process of its own, for calls that a test cannot make itself. The first
// argument is the function's name in the table of ProbeMain.cpp. The process prints the function's result as
// a line on standard output.

Outcome probe(std::vector<std::string> arguments, const Surroundings& surroundings = {});
Outcome probeInjected(const Injection& injection, std::vector<std::string> arguments,
                      const Surroundings& surroundings = {});

/// The command line of the same.
std::vector<std::string> probeCommand(std::vector<std::string> arguments);
