#pragma once

#include <string>
#include <vector>

#include "Injection.hpp"
#include "Process.hpp"

// One function of the room in a process of its own, for what a test cannot do to itself. The first argument
// names the function, as the table in ProbeMain.cpp does; what the function returns is printed as a line on
// standard output.

Outcome probe(std::vector<std::string> arguments, const Surroundings& surroundings = {});
Outcome probeInjected(const Injection& injection, std::vector<std::string> arguments,
                      const Surroundings& surroundings = {});

/// The command line of the same.
std::vector<std::string> probeCommand(std::vector<std::string> arguments);
