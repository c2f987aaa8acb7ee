#pragma once

#include <string>
#include <vector>

#include "Process.hpp"

/// System calls that are made to go wrong in a real process. Its children are spared unless told otherwise.
struct Injection {
    /// Each as strace's option -e inject= takes it: "ftruncate:error=EIO", "read:error=EINTR:when=1".
    std::vector<std::string> faults;
    /// Only calls that concern the file or link at this path; empty for all.
    std::string path = {};
    bool inChildren = false;  ///< in the processes that it starts as well
};

/// Runs a command to its end with the injection in effect.
Outcome runInjected(const Injection& injection, const std::vector<std::string>& command,
                    Surroundings surroundings = {});
