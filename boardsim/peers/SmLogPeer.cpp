#include "SmLogPeer.hpp"

#include <cstdint>

#include <sys/timerfd.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Boardsim {
namespace {

constexpr AppID application = 3;
constexpr int level = 3;

}  // namespace

SmLogPeer::SmLogPeer(const char* logName, std::string tagName)
    : log(SmLog::getClientInstance(logName, application)),
      tag(std::move(tagName)),
      timer(Base::checked(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "timerfd_create")) {
    constexpr itimerspec everySecond{.it_interval = {.tv_sec = 1, .tv_nsec = 0},
                                     .it_value = {.tv_sec = 1, .tv_nsec = 0}};
    Base::checked(::timerfd_settime(timer.get(), 0, &everySecond, nullptr), "timerfd_settime");
    if (log != nullptr) {
        log->write(level, tag.c_str(), "started");
    }
}

void SmLogPeer::serve() {
    std::uint64_t passed = 0;
    Base::checked(Base::uninterrupted([&] { return ::read(timer.get(), &passed, sizeof passed); }),
                  "timerfd");
    seconds += passed;
    if (log != nullptr) {
        log->write(level, tag.c_str(), "in service for %llu s", seconds);
    }
}

void fillSmLog(const char* logName) {
    constexpr int capacity = 2 << 20;
    constexpr int entryLength = 1000;
    SmLog* log = SmLog::getClientInstance(logName, application);
    for (int written = 0; log != nullptr && written < capacity; written += entryLength) {
        log->write(level, "filler", "entry %7d %0*d", written / entryLength, entryLength, 0);
    }
}

}  // namespace Boardsim
