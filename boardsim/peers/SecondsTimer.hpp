#pragma once

#include <chrono>
#include <cstdint>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Becomes readable every second.
class SecondsTimer {
public:
    /// `first` is the time until it becomes readable first. Throws std::system_error.
    explicit SecondsTimer(std::chrono::nanoseconds first = std::chrono::seconds(1));

    int descriptor() const { return timer.get(); }

    /// How often it became readable since the last call. Waits until it is.
    std::uint64_t passed() const;

private:
    Base::UniqueFd timer;
};

}  // namespace Boardsim
