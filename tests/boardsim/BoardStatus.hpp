#pragma once

#include <string>

#include "Process.hpp"

/// Runs a script that sees no processes but its own. boardsim is $0 to it, and `board OPTION...` is a board
/// that has just come up and stays until the process $board is ended; where $attack is set, the board has run
/// that script by then. `follow OPTION COUNT` is boardsim status that follows, COUNT lines later; `next`
/// shows a further line.
Outcome apart(const std::string& script);

/// With "TIME" in place of each time, and "ID" in place of each process id in a heading or a table.
std::string steady(std::string text);
