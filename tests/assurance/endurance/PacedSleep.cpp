// A library for LD_PRELOAD: announces each long sleep of a program, so that a test can act in it. The
// environment names two FIFOs:
// - PACED_SLEEP_BEGIN gets a byte when a sleep of a second or more begins
// - PACED_SLEEP_END, if it is set, gives a byte that ends this sleep, however long it should be

#include <cstdlib>
#include <ctime>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// No descriptor stays open: the test counts those of the program.
bool passByte(const char* variable, int flags, ssize_t (*pass)(int)) {
    const char* const path = std::getenv(variable);
    const int fifo = path == nullptr ? -1 : ::open(path, flags | O_CLOEXEC);
    if (fifo == -1) {
        return false;
    }
    const bool passed = pass(fifo) == 1;
    ::close(fifo);
    return passed;
}

ssize_t put(int fifo) {
    return ::write(fifo, "", 1);
}

ssize_t take(int fifo) {
    char byte = 0;
    return ::read(fifo, &byte, 1);
}

/// True if the test has ended the sleep.
bool isPaced(const timespec* time) {
    return time->tv_sec >= 1 && passByte("PACED_SLEEP_BEGIN", O_WRONLY, put) &&
           passByte("PACED_SLEEP_END", O_RDONLY, take);
}

}  // namespace

extern "C" {

int nanosleep(const timespec* requested_time, timespec* remaining) {
    using Sleep = int (*)(const timespec*, timespec*);
    static const auto sleep = reinterpret_cast<Sleep>(::dlsym(RTLD_NEXT, "nanosleep"));
    return isPaced(requested_time) ? 0 : sleep(requested_time, remaining);
}

int clock_nanosleep(clockid_t clock_id, int flags, const timespec* req, timespec* rem) {
    using Sleep = int (*)(clockid_t, int, const timespec*, timespec*);
    static const auto sleep = reinterpret_cast<Sleep>(::dlsym(RTLD_NEXT, "clock_nanosleep"));
    return flags == 0 && isPaced(req) ? 0 : sleep(clock_id, flags, req, rem);
}
}
