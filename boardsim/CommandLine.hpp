#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"

/// What the program was asked to do.
struct Request {
    bool help = false;
    Scenario scenario;
    std::vector<std::string> command;  ///< empty: a shell
};

/// Understands the program's command line; reads a scenario file that it names. Throws UsageError.
Request parseCommandLine(int argc, char** argv);
