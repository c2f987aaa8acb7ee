#pragma once

#include <initializer_list>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Blocks the signals in the calling thread. The descriptor is readable while one is pending. Throws
/// std::system_error.
Base::UniqueFd openSignalDescriptor(std::initializer_list<int> signals);

/// Waits for a signal and returns its number.
int readSignal(const Base::UniqueFd& signals);

}  // namespace Boardsim
