// A library for LD_PRELOAD: makes system calls of korvel behave as the kernel may let them behave, but seldom
// does. Other programs are not affected. UNSTEADY says which:
// - short: read() and write() of files, pipes and streams transfer only a part
// - signals: a signal with a handler arrives each millisecond
// - readiness: poll() reports readiness when there is none, each second time

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include <dlfcn.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isShort = false;
bool isReadinessWrong = false;

volatile std::sig_atomic_t arrived = 0;

/// The handler has no SA_RESTART, so each signal interrupts a call that waits.
void startSignals() {
    const int number = SIGRTMIN + 5;
    struct sigaction action {};
    action.sa_handler = [](int) { arrived = arrived + 1; };
    ::sigaction(number, &action, nullptr);
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = number;
    timer_t timer{};
    constexpr timespec millisecond{.tv_sec = 0, .tv_nsec = 1'000'000};
    const itimerspec each{.it_interval = millisecond, .it_value = millisecond};
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0) {
        ::timer_settime(timer, 0, &each, nullptr);
    }
}

[[gnu::constructor]] void start() {
    const char* const chosen = std::getenv("UNSTEADY");
    if (chosen == nullptr || std::string_view(program_invocation_short_name) != "korvel") {
        return;
    }
    const std::string_view kind = chosen;
    isShort = kind == "short";
    isReadinessWrong = kind == "readiness";
    if (kind == "signals") {
        startSignals();
    }
}

/// A datagram is transferred whole or not at all.
bool mayBePart(int file) {
    struct stat state {};
    int type = SOCK_STREAM;
    socklen_t size = sizeof type;
    return ::fstat(file, &state) == 0 &&
           (S_ISREG(state.st_mode) || S_ISFIFO(state.st_mode) ||
            (S_ISSOCK(state.st_mode) && ::getsockopt(file, SOL_SOCKET, SO_TYPE, &type, &size) == 0 &&
             type == SOCK_STREAM));
}

/// Scattered over 1 to `size`, and the same each time.
std::size_t partOf(int file, std::size_t size) {
    static std::size_t state = 1;
    if (!isShort || size < 2) {
        return size;
    }
    const int reason = errno;
    const bool whole = !mayBePart(file);
    errno = reason;
    state = state * 6364136223846793005U + 1442695040888963407U;
    return whole ? size : 1 + (state >> 33) % size;
}

template <class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

ssize_t read(int fd, void* buf, size_t nbytes) {
    static auto* const real = next<decltype(read)>("read");
    return real(fd, buf, partOf(fd, nbytes));
}

ssize_t write(int fd, const void* buf, size_t n) {
    static auto* const real = next<decltype(write)>("write");
    return real(fd, buf, partOf(fd, n));
}

int poll(pollfd* fds, nfds_t nfds, int timeout) {
    static auto* const real = next<decltype(poll)>("poll");
    static bool lies = false;
    lies = isReadinessWrong && !lies;
    if (!lies) {
        return real(fds, nfds, timeout);
    }
    for (nfds_t i = 0; i < nfds; ++i) {
        fds[i].revents = fds[i].events;
    }
    return static_cast<int>(nfds);
}
}
