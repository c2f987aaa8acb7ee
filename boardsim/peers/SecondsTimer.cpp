#include "SecondsTimer.hpp"

#include <sys/timerfd.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Boardsim {

SecondsTimer::SecondsTimer(std::chrono::nanoseconds first)
    : timer(Base::checked(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "timerfd_create")) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(first);
    const itimerspec times{.it_interval = {.tv_sec = 1, .tv_nsec = 0},
                           .it_value = {.tv_sec = static_cast<time_t>(seconds.count()),
                                        .tv_nsec = static_cast<long>((first - seconds).count())}};
    Base::checked(::timerfd_settime(timer.get(), 0, &times, nullptr), "timerfd_settime");
}

std::uint64_t SecondsTimer::passed() const {
    std::uint64_t count = 0;
    Base::checked(Base::uninterrupted([&] { return ::read(timer.get(), &count, sizeof count); }), "timerfd");
    return count;
}

}  // namespace Boardsim
