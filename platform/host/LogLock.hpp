#pragma once

#include <mutex>

#include "SharedMemory.hpp"

namespace HostBoard {

/// Excludes all others from a shared-memory log: the threads of this process by a mutex, the other
/// processes by flock() on the memory's descriptor. The kernel takes the lock from a holder that dies. One
/// that lives and does not go on (stopped, say) is waited for about a second and not longer.
class LogLock {
public:
    /// Takes the lock, and gives it back at its end if it got it. Converts to whether it did.
    class Hold {
    public:
        explicit Hold(LogLock& wanted) : lock(wanted), held(wanted.acquire()) {}
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        Hold(Hold&&) = delete;
        Hold& operator=(Hold&&) = delete;
        ~Hold() {
            if (held) {
                lock.release();
            }
        }
        explicit operator bool() const { return held; }

    private:
        LogLock& lock;
        const bool held;
    };

    /// `guarded` outlives the lock.
    explicit LogLock(const SharedMemory& guarded) : memory(guarded) {}

    /// Around a fork: excludes the threads of this process alone, so that the child's copy of the mutex is
    /// not one that a thread holds which the child does not have.
    void excludeThreads() { mutex.lock(); }
    void admitThreads() { mutex.unlock(); }

private:
    bool acquire();
    bool tryAcquire();
    void release();

    const SharedMemory& memory;
    std::mutex mutex;
};

}  // namespace HostBoard
