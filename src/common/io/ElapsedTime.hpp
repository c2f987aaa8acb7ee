#pragma once

#include <chrono>

namespace Korvel {

/// The time since construction: the maximum of wall clock and steady clock, so that setting the wall clock
/// back does not extend a limit.
class ElapsedTime {
public:
    ElapsedTime();

    bool exceeds(std::chrono::milliseconds limit) const;

private:
    std::chrono::system_clock::time_point wallStart;
    std::chrono::steady_clock::time_point steadyStart;
};

}  // namespace Korvel
