#pragma once

#include <initializer_list>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Signals as something to read: blocks them in the calling thread and returns a descriptor that is
/// readable while one is pending. Throws std::system_error.
Base::UniqueFd openSignalDescriptor(std::initializer_list<int> signals);

/// Waits for a signal at such a descriptor and returns its number.
int readSignal(const Base::UniqueFd& signals);

}  // namespace Boardsim
