#pragma once

#include <string>

namespace Boardsim {

/// Reads a file that the user named. Throws UsageError if it cannot be read.
std::string readUserFile(const std::string& path);

}  // namespace Boardsim
