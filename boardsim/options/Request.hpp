#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Scenario.hpp"
#include "SshAccess.hpp"

namespace Boardsim {

enum class Help : std::uint8_t { none, brief, full };

/// The parsed command line.
struct Request {
    Help help = Help::none;  ///< the help text to print; none: run a board
    Scenario scenario;
    SshAccess ssh;
    std::vector<std::string> command;  ///< empty: a shell, or the SSH server
};

}  // namespace Boardsim
