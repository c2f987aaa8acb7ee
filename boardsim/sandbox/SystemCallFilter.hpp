#pragma once

#include "UniqueFd.hpp"

namespace Boardsim {

/// Makes the system call filter for every process of a sandbox. Calls that reach beyond the sandbox fail with
/// EPERM, in every ABI of the processor. They push input into the shared terminal (TIOCSTI, TIOCLINUX), or
/// access the keys of the host's session. Programs of a foreign architecture are killed.
///
/// Returns a close-on-exec descriptor for bubblewrap's option --seccomp. Throws std::system_error.
Base::UniqueFd openSystemCallFilter();

}  // namespace Boardsim
