#include "SignalStorm.hpp"

#include <csignal>

#include <sys/time.h>

namespace {

constexpr timeval interval{.tv_sec = 0, .tv_usec = 5000};

volatile std::sig_atomic_t arrived = 0;

void setTimer(timeval every) {
    const itimerval timer{.it_interval = every, .it_value = every};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace

SignalStorm::SignalStorm() {
    arrived = 0;
    struct sigaction action {};
    action.sa_handler = [](int) { arrived = arrived + 1; };  // and no SA_RESTART
    ::sigaction(SIGALRM, &action, nullptr);
    setTimer(interval);
}

SignalStorm::~SignalStorm() {
    setTimer({});
    std::signal(SIGALRM, SIG_DFL);
}

int SignalStorm::count() {
    return arrived;
}
