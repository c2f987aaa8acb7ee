#include "WallClock.hpp"

#include <ctime>

namespace Korvel {

static_assert(sizeof(std::time_t) == 8,
              "times past 2038: on a 32-bit processor they take glibc 2.34 or musl 1.2");

std::chrono::system_clock::time_point wallClockNow() {
    using namespace std::chrono;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const auto sinceEpoch = seconds(now.tv_sec) + nanoseconds(now.tv_nsec);
    return system_clock::time_point(duration_cast<system_clock::duration>(sinceEpoch));
}

}  // namespace Korvel
