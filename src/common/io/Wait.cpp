#include "Wait.hpp"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <thread>

#include <poll.h>

#include "Console.hpp"

namespace Korvel {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Returns the time-out for poll(): milliseconds, rounded up so that it never wakes before the deadline, or
/// -1 without a deadline.
int pollTimeout(const Deadline& deadline) {
    if (!deadline) {
        return -1;
    }
    const auto left = std::chrono::ceil<milliseconds>(*deadline - steady_clock::now());
    return static_cast<int>(std::clamp<milliseconds::rep>(left.count(), 0, std::numeric_limits<int>::max()));
}

Readiness waitFor(short event, int descriptor, const Deadline& deadline) {
    flushStandardOutput();
    if (descriptor < 0) {  // poll() ignores negative descriptors and would sleep
        errno = EBADF;
        return Readiness::failed;
    }
    for (;;) {
        pollfd waiting{.fd = descriptor, .events = event, .revents = 0};
        const int ready = ::poll(&waiting, 1, pollTimeout(deadline));
        if (ready > 0) {
            if ((waiting.revents & POLLNVAL) == 0) {
                return Readiness::ready;
            }
            errno = EBADF;
            return Readiness::failed;
        }
        if (ready < 0 && errno != EINTR) {
            return Readiness::failed;
        }
        if (hasPassed(deadline)) {
            return Readiness::timedOut;
        }
    }
}

}  // namespace

Deadline deadlineIn(milliseconds limit) {
    constexpr milliseconds longest = std::chrono::hours(100 * 365 * 24);  // fits the clock's nanoseconds
    return steady_clock::now() + std::clamp(limit, milliseconds::zero(), longest);
}

bool hasPassed(const Deadline& deadline) {
    return deadline && steady_clock::now() >= *deadline;
}

Readiness waitReadable(int descriptor, const Deadline& deadline) {
    return waitFor(POLLIN, descriptor, deadline);
}

Readiness waitWritable(int descriptor, const Deadline& deadline) {
    return waitFor(POLLOUT, descriptor, deadline);
}

void nap(milliseconds time) {
    flushStandardOutput();
    std::this_thread::sleep_for(time);
}

}  // namespace Korvel
