#pragma once

#include "UniqueFd.hpp"

namespace Boardsim {

/// Makes the filter of system calls that every process of a sandbox runs under. It refuses, with EPERM and in
/// every binary interface of the processor, what reaches beyond the sandbox:
/// input pushed into the terminal that the sandbox shares with the host (TIOCSTI, TIOCLINUX), and the keys of
/// the host's session. Programs of a foreign processor are killed.
///
/// Returns a descriptor from which bubblewrap's option --seccomp reads the filter, close-on-exec. Throws
/// std::system_error.
Base::UniqueFd openSystemCallFilter();

}  // namespace Boardsim
