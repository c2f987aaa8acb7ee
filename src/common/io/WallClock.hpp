#pragma once

#include <chrono>

namespace Korvel {

/// Returns the current wall clock time. Replaces system_clock::now(), whose compiled code in 32-bit C++
/// libraries may use 32-bit seconds and overflow in 2038.
std::chrono::system_clock::time_point wallClockNow();

}  // namespace Korvel
