#pragma once

#include <string>

namespace Boardsim {

/// Everything in a file that the user named. Throws UsageError where it cannot be read.
std::string readUserFile(const std::string& path);

}  // namespace Boardsim
