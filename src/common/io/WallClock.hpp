#pragma once

#include <chrono>

namespace Korvel {

/// The wall clock's time now. Stands for system_clock::now(), which is part of the C++ library's binary and
/// on 32-bit processors may have been built with seconds of 32 bits: it goes wrong in 2038.
std::chrono::system_clock::time_point wallClockNow();

}  // namespace Korvel
