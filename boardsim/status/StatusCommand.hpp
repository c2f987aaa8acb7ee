#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// boardsim status ARGUMENTS...: prints how the boards are that this user runs and what they received and
/// answered last; told to follow them, goes on with what they do until the last of them has ended. Returns
/// the exit status. Throws UsageError.
int runStatus(const std::vector<std::string>& arguments);

}  // namespace Boardsim
