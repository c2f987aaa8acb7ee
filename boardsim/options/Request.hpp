#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"
#include "SshAccess.hpp"

namespace Boardsim {

/// The parsed command line.
struct Request {
    std::string (*help)() = nullptr;  ///< the help text to print; null: run a board
    Scenario scenario;
    SshAccess ssh;
    std::vector<std::string> command;  ///< empty: a shell, or the SSH server
};

}  // namespace Boardsim
