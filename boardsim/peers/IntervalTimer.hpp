#pragma once

#include <chrono>
#include <cstdint>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Becomes readable again and again, always after the same time.
class IntervalTimer {
public:
    /// `first` is the time until it becomes readable first. Both are more than 0. Throws std::system_error.
    IntervalTimer(std::chrono::nanoseconds first, std::chrono::nanoseconds interval);

    int descriptor() const { return timer.get(); }

    /// How often it became readable since the last call. Waits until it is.
    std::uint64_t passed() const;

private:
    Base::UniqueFd timer;
};

}  // namespace Boardsim
