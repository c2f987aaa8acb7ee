#include "LogLock.hpp"

#include <cerrno>
#include <chrono>
#include <thread>

#include <sys/file.h>

#include "SystemCall.hpp"

namespace HostBoard {
namespace {

constexpr std::chrono::seconds lockTimeout{1};
constexpr std::chrono::microseconds pollInterval{500};

}  // namespace

// Polls, because flock() has no time-out. Releases the mutex between attempts, so that no thread holds it
// longer than one log operation.
bool LogLock::acquire() {
    const auto deadline = std::chrono::steady_clock::now() + lockTimeout;
    while (!tryAcquire()) {
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

/// Returns false with errno EWOULDBLOCK if another thread or process holds the lock.
bool LogLock::tryAcquire() {
    std::unique_lock threads(mutex, std::try_to_lock);
    if (!threads) {
        errno = EWOULDBLOCK;
        return false;
    }
    if (Base::uninterrupted([&] { return ::flock(memory.descriptor(), LOCK_EX | LOCK_NB); }) != 0) {
        return false;
    }
    threads.release();
    return true;
}

void LogLock::release() {
    Base::uninterrupted([&] { return ::flock(memory.descriptor(), LOCK_UN); });
    mutex.unlock();
}

}  // namespace HostBoard
