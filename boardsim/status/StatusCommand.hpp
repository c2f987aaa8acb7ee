#pragma once

#include <string>
#include <vector>

namespace Boardsim {

/// boardsim status ARGUMENTS...: prints the state of this user's boards and their last messages. With
/// --follow, prints new messages until the last board has ended. Returns the exit status. Throws UsageError.
int runStatus(const std::vector<std::string>& arguments);

}  // namespace Boardsim
