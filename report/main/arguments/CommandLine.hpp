#pragma once

#include <optional>
#include <string>

#include "Arguments.hpp"
#include "Command.hpp"

namespace Report {

/// What the user asks for.
struct CommandLine {
    std::optional<Command> command;  ///< none if only a rule is to be explained
    Arguments arguments;
    std::optional<std::string> text;  ///< the help text or the version, if that is all that is wanted
};

/// Throws UsageError.
CommandLine parseCommandLine(int argc, const char* const* argv);

}  // namespace Report
