#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

/// What the program was asked to do.
struct Request {
    std::string (*help)() = nullptr;  ///< the help text to print; null: none, a board is to run
    Scenario scenario;
    std::vector<std::string> command;  ///< empty: a shell
};

/// Understands the program's command line; reads a scenario file that it names. Throws UsageError.
Request parseCommandLine(int argc, char** argv);

}  // namespace Boardsim
