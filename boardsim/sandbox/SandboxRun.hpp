#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Scenario.hpp"
#include "SshAccess.hpp"

namespace Boardsim {

/// The sandbox could not be started. what() is one or more lines for the user.
class SandboxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs `command` (if empty, a shell; with `ssh`, its server) on a board in a new sandbox. Returns the exit
/// status of the command, or 128 + N if signal N killed it. Everything in the sandbox ends with the command,
/// or when this program gets SIGINT or SIGTERM or is killed. Throws SandboxError.
int runInSandbox(const Scenario& scenario, const SshAccess& ssh, std::vector<std::string> command);

}  // namespace Boardsim
