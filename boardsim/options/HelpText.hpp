#pragma once

#include <string>

namespace Boardsim {

/// The text of --help, from the tables that parse the command line. Lines have at most 80 columns.
std::string helpText();

/// The text of -h: the usage and the options, as in helpText().
std::string shortHelpText();

}  // namespace Boardsim
