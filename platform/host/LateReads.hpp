#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace HostBoard {

/// The latest reads of this process that came too late for entries behind their start. Threads may use it
/// at once; it has no lock, so that a forked child can use it whatever the parent's threads were doing.
class LateReads {
public:
    /// A read that began at the position `start`, not 0, and returned `end`.
    void add(unsigned start, unsigned end);

    bool contains(unsigned start, unsigned end) const;

private:
    // A reader asks about its last read only. It takes more threads than this, all late at once, to push
    // one another's reads out.
    static constexpr std::size_t kept = 16;

    std::array<std::atomic<std::uint64_t>, kept> reads{};
    std::atomic<unsigned> count = 0;
};

}  // namespace HostBoard
