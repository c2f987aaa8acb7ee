#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace Korvel {

/// Synchronizes two processes that share this object's memory and work in turns. Everything that one side
/// writes before it passes the turn is visible to the other side afterwards.
class Turn {
public:
    enum Side : std::uint32_t { requester, responder };

    /// Only for the side that has the turn.
    void passTo(Side next);

    /// Waits until this side has the turn. Returns false at the time limit, or earlier if a signal arrives.
    bool await(Side side, std::chrono::milliseconds limit) const;

private:
    std::atomic<std::uint32_t> current = requester;
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free && sizeof(std::atomic<std::uint32_t>) == 4,
                  "the kernel waits on the bare word");
};

}  // namespace Korvel
