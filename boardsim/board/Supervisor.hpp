#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// The first process of the sandbox: starts the board, runs `command` on it and reaps orphans. Returns the
/// exit status of the command. When this process exits, the kernel kills everything else in the sandbox.
/// Takes over `lineDescriptor`, the sandbox's end of the control line. Throws what Board's constructor
/// throws.
int supervise(int lineDescriptor, const std::vector<std::string>& command);

}  // namespace Boardsim
