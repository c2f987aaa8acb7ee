#pragma once

#include "Request.hpp"

namespace Boardsim {

/// Parses the command line, and reads the files that it names. Throws UsageError.
Request parseCommandLine(int argc, char** argv);

}  // namespace Boardsim
