#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

/// The sandbox could not be had. what() is one or more lines for the user.
class SandboxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs `command` (with no words: a shell) on a board in a sandbox of its own and returns the command's
/// exit status, 128 + N where signal N ended it. When the command ends, when this program gets SIGINT or
/// SIGTERM, or when it is killed, everything in the sandbox ends. Throws SandboxError.
int runInSandbox(const Scenario& scenario, std::vector<std::string> command);

}  // namespace Boardsim
