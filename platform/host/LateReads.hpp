#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace HostBoard {

/// The latest late reads of this process: reads whose first entries had already been overwritten. Thread-safe
/// and lock-free, so that a forked child can use it regardless of what the parent's threads were doing.
class LateReads {
public:
    /// Records a read that started at position `start` (not 0) and returned `end`.
    void add(unsigned start, unsigned end);

    bool contains(unsigned start, unsigned end) const;

private:
    // Readers ask only about their last read. A record is lost only if more than `capacity` threads read late
    // at the same time.
    static constexpr std::size_t capacity = 16;

    std::array<std::atomic<std::uint64_t>, capacity> reads{};
    std::atomic<unsigned> count = 0;
};

}  // namespace HostBoard
