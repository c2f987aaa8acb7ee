#pragma once

#include <string>
#include <vector>

#include "Process.hpp"

/// System calls that fail in a real process. By default they do not fail in its children.
struct Injection {
    /// In the format of strace's option -e inject=: "ftruncate:error=EIO", "read:error=EINTR:when=1". The
    /// names of calls are those of x86-64.
    std::vector<std::string> faults;
    /// Limits the faults to calls on the file or link at this path. Empty for all calls.
    std::string path = {};
    bool inChildren = false;  ///< also in the processes that it starts
};

/// Runs a command to its end with the injection in effect.
Outcome runInjected(const Injection& injection, const std::vector<std::string>& command,
                    Surroundings surroundings = {});
