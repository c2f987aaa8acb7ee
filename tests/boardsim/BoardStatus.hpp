#pragma once

#include <string>

#include "Process.hpp"

/// Runs a script that sees only its own processes. In it, $0 is boardsim. `board OPTION...` starts a board,
/// which runs until the process $board ends. If $attack is set, the board runs that script first. `follow
/// OPTION COUNT` starts a following boardsim status and returns after COUNT lines. `next` shows another line.
Outcome apart(const std::string& script);

/// Replaces each time by "TIME", and each process id in a heading or a table by "ID".
std::string steady(std::string text);
