#pragma once

#include "UniqueFd.hpp"

namespace Boardsim {

/// Makes the system call filter for every process of a sandbox. It covers every ABI of the processor. Calls
/// that reach beyond the sandbox fail with EPERM. They push input into the shared terminal (TIOCSTI,
/// TIOCLINUX), or access the keys of the host's session. setgroups() succeeds without doing anything, because
/// a login needs it. Programs of a foreign architecture are killed.
///
/// Returns a close-on-exec descriptor for bubblewrap's option --seccomp. Throws std::system_error.
Base::UniqueFd openSystemCallFilter();

}  // namespace Boardsim
