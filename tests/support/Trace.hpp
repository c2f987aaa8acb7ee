#pragma once

#include <string>
#include <vector>

#include "Process.hpp"

/// Runs a command to its end and stores its system calls in `calls`, one line each. `selection` has the
/// format of strace's option -e trace=. Includes calls of child processes if `withChildren` is set.
Outcome runTraced(const std::string& selection, const std::vector<std::string>& command,
                  std::vector<std::string>& calls, bool withChildren = false);
