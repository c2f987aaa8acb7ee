#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace Korvel {

/// Whose turn it is of two processes that share this object's memory. What one wrote before it passed the
/// turn on, the other sees once it has the turn.
class Turn {
public:
    enum Side : std::uint32_t { asking, answering };

    /// Only by the side whose turn it is.
    void passTo(Side next);

    /// Waits until it is this side's turn; false where the limit passes first. A signal can end the wait
    /// early.
    bool await(Side side, std::chrono::milliseconds limit) const;

private:
    std::atomic<std::uint32_t> current = asking;
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free && sizeof(std::atomic<std::uint32_t>) == 4,
                  "the kernel waits on the bare word");
};

}  // namespace Korvel
