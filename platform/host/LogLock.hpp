#pragma once

#include <mutex>

#include "SharedMemory.hpp"

namespace HostBoard {

/// Exclusive lock of a shared-memory log: a mutex between the threads of this process, flock() on the
/// memory's descriptor between processes. The kernel releases the lock of a process that dies. If a live
/// holder (a stopped process, for example) keeps the lock, acquiring it fails after about one second.
class LogLock {
public:
    /// Acquires the lock and releases it on destruction. Converts to false if the lock was not acquired.
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

    /// `guarded` must outlive the lock.
    explicit LogLock(const SharedMemory& guarded) : memory(guarded) {}

    /// Call these around a fork. They lock only the mutex, so that the child does not inherit it locked by a
    /// thread that exists only in the parent.
    void lockThreads() { mutex.lock(); }
    void unlockThreads() { mutex.unlock(); }

private:
    bool acquire();
    bool tryAcquire();
    void release();

    const SharedMemory& memory;
    std::mutex mutex;
};

}  // namespace HostBoard
