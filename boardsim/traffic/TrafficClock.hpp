#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "Traffic.hpp"

namespace Boardsim {

/// The time since a board's traffic began. All processes of the board read the beginning from the same file.
class TrafficClock {
public:
    /// The content of the file, for a board that starts now.
    static std::string startText(const Traffic& traffic);

    /// Reads the file. Throws std::system_error if it cannot be read, std::runtime_error if it is invalid.
    TrafficClock();

    /// Whole seconds since the traffic began.
    std::uint64_t second() const;

    /// The time until second() grows. At least a nanosecond.
    std::chrono::nanoseconds untilNextSecond() const;

private:
    std::chrono::nanoseconds elapsed() const;

    std::chrono::nanoseconds start;  // of the monotonic clock
};

}  // namespace Boardsim
