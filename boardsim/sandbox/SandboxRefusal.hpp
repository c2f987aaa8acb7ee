#pragma once

#include <string>

namespace Boardsim {

/// Why this machine gives no sandbox, as far as its settings tell, and what can be done about it: two or
/// three lines for the user, to stand below the one in which bubblewrap says what failed.
std::string sandboxRefusal();

}  // namespace Boardsim
