#pragma once

#include <chrono>

namespace Korvel {

/// The time since this object was made, by the wall clock and by the steady one, whichever says more: a wall
/// clock that is set back does not stretch a limit.
class ElapsedTime {
public:
    ElapsedTime();

    bool exceeds(std::chrono::milliseconds limit) const;

private:
    std::chrono::system_clock::time_point wallStart;
    std::chrono::steady_clock::time_point steadyStart;
};

}  // namespace Korvel
