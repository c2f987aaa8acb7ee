#include "Pace.hpp"

#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "TestFiles.hpp"

namespace {

constexpr const char* beginPath = "/tmp/sleep-begins";
constexpr const char* endPath = "/tmp/sleep-ends";
constexpr std::chrono::seconds longestWork{4};  // the program may sleep for five seconds

/// Opened for both directions, a FIFO neither blocks nor ends.
int openFifo(const char* path) {
    std::filesystem::remove(path);
    if (::mkfifo(path, 0600) != 0) {
        throw std::runtime_error(std::string("no FIFO ") + path);
    }
    return ::open(path, O_RDWR | O_CLOEXEC);
}

}  // namespace

Pace::Pace(Sleep chosen) : sleep(chosen), begin(openFifo(beginPath)), end(openFifo(endPath)) {
}

bool Pace::isFifo(const std::filesystem::path& file) {
    return file == beginPath || file == endPath;
}

Surroundings Pace::surroundings() const {
    Surroundings result;
    result.environment = {{"LD_PRELOAD", besideThisProgram("libpaced_sleep.so")},
                          {"PACED_SLEEP_BEGIN", beginPath}};
    if (sleep == Sleep::untilEnded) {
        result.environment.insert({"PACED_SLEEP_END", endPath});
    }
    result.together = true;
    return result;
}

void Pace::awaitSleep(std::chrono::seconds limit) {
    pollfd waiting{.fd = begin.get(), .events = POLLIN, .revents = 0};
    const auto milliseconds = static_cast<int>(std::chrono::milliseconds(limit).count());
    char byte = 0;
    if (::poll(&waiting, 1, milliseconds) != 1 || ::read(begin.get(), &byte, 1) != 1) {
        throw std::runtime_error("the program does not begin to sleep");
    }
    began = std::chrono::steady_clock::now();
}

void Pace::endSleep() const {
    if (sleep == Sleep::asLongAsUsual) {
        if (std::chrono::steady_clock::now() - began > longestWork) {
            throw std::runtime_error("this machine is too busy for real time");
        }
    } else if (::write(end.get(), "", 1) != 1) {
        throw std::runtime_error("the sleep cannot be ended");
    }
}
