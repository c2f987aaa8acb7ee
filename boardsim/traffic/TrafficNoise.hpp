#pragma once

#include <cstdint>

namespace Boardsim {

/// Random numbers that depend only on the seed, the source, the second and the draw. All processes of a board
/// draw the same numbers, on every processor.
class TrafficNoise {
public:
    /// `source` separates the numbers of the board's parts.
    TrafficNoise(std::uint64_t seed, std::uint64_t source);

    /// The numbers of one second, one after another.
    class Draws {
    public:
        /// From `least` to `most`, which is not less.
        std::uint64_t next(std::uint64_t least, std::uint64_t most);

    private:
        friend class TrafficNoise;
        explicit Draws(std::uint64_t startOfSecond) : start(startOfSecond) {}

        std::uint64_t start;
        std::uint64_t drawn = 0;
    };

    Draws in(std::uint64_t second) const;

private:
    std::uint64_t start;
};

}  // namespace Boardsim
