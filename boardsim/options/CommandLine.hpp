#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

/// The parsed command line.
struct Request {
    std::string (*help)() = nullptr;  ///< the help text to print; null: run a board
    Scenario scenario;
    std::vector<std::string> command;  ///< empty: a shell
};

/// Parses the command line, and reads a scenario file that it names. Throws UsageError.
Request parseCommandLine(int argc, char** argv);

}  // namespace Boardsim
