#include "IntervalTimer.hpp"

#include <sys/timerfd.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Boardsim {
namespace {

timespec timespecOf(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return {.tv_sec = static_cast<time_t>(seconds.count()),
            .tv_nsec = static_cast<long>((time - seconds).count())};
}

}  // namespace

IntervalTimer::IntervalTimer(std::chrono::nanoseconds first, std::chrono::nanoseconds interval)
    : timer(Base::checked(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "timerfd_create")) {
    const itimerspec times{.it_interval = timespecOf(interval), .it_value = timespecOf(first)};
    Base::checked(::timerfd_settime(timer.get(), 0, &times, nullptr), "timerfd_settime");
}

std::uint64_t IntervalTimer::passed() const {
    std::uint64_t count = 0;
    Base::checked(Base::uninterrupted([&] { return ::read(timer.get(), &count, sizeof count); }), "timerfd");
    return count;
}

}  // namespace Boardsim
