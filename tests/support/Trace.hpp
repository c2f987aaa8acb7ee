#pragma once

#include <string>
#include <vector>

#include "Process.hpp"

/// Runs a command to its end and fills `calls` with its system calls, a line each; `selection` as strace's
/// option -e trace= takes it. Calls of child processes count where `withChildren` is set.
Outcome runTraced(const std::string& selection, const std::vector<std::string>& command,
                  std::vector<std::string>& calls, bool withChildren = false);
