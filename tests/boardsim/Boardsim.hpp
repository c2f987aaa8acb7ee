#pragma once

#include <string>
#include <vector>

#include "Process.hpp"

/// The command line of the program under test.
std::vector<std::string> boardsimCommand(std::vector<std::string> arguments);

/// Runs the program under test to its end.
Outcome boardsim(std::vector<std::string> arguments, const Surroundings& surroundings = {});

/// Runs a shell script on a board.
Outcome onBoard(std::vector<std::string> options, const std::string& script);
