#pragma once

#include <string>

namespace Boardsim {

/// Explains why the sandbox failed, as far as the machine's settings show, and what to do about it. Two or
/// three lines for the user, below bubblewrap's own message.
std::string sandboxRefusal();

}  // namespace Boardsim
