#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// The first process of the sandbox: starts the board, runs `command` on it, reaps what is left over.
/// Returns the command's exit status; the kernel ends everything else in the sandbox when this process
/// ends. `lineDescriptor` is the sandbox's end of the line to the host, from now on owned here. Throws
/// what the board throws when it does not start.
int supervise(int lineDescriptor, const std::vector<std::string>& command);

}  // namespace Boardsim
