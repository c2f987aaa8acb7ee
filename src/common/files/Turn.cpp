#include "Turn.hpp"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Korvel {
namespace {

/// The time format of the original futex system call on every processor, independent of the C library's.
struct KernelTime {
    long seconds;
    long nanoseconds;
};

void futex(const std::atomic<std::uint32_t>& word, int operation, std::uint32_t value,
           const KernelTime* limit) {
    ::syscall(SYS_futex, &word, operation, value, limit, nullptr, 0);
}

}  // namespace

void Turn::passTo(Side next) {
    current.store(next, std::memory_order_release);
    futex(current, FUTEX_WAKE, 1, nullptr);
}

bool Turn::await(Side side, std::chrono::milliseconds limit) const {
    using namespace std::chrono;
    const std::uint32_t other = side == requester ? responder : requester;
    if (current.load(std::memory_order_acquire) != side) {
        const KernelTime time{.seconds = static_cast<long>(limit / seconds(1)),
                              .nanoseconds = static_cast<long>(nanoseconds(limit % seconds(1)).count())};
        futex(current, FUTEX_WAIT, other, &time);  // returns immediately if the word has changed
    }
    return current.load(std::memory_order_acquire) == side;
}

}  // namespace Korvel
