#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "LogLock.hpp"
#include "LogRing.hpp"
#include "Mapping.hpp"
#include "SharedMemory.hpp"

namespace HostBoard {

/// A log in shared memory, for concurrent use by any number of processes and threads. Any process can change
/// the object in /dev/shm, so every operation first checks, under the lock, that it contains a log. An
/// emptied object becomes an empty log again. On a truncated or overwritten object, operations fail.
class SharedLog {
public:
    /// Opens the log `name`, a file name in /dev/shm, and creates it if it is missing or empty. Returns null
    /// if that fails, or if the object contains anything but a log.
    static std::unique_ptr<SharedLog> open(const std::string& name);

    /// Adds an entry as LogRing::append() does. Returns false, and drops the entry, if the lock or the memory
    /// is not available.
    bool append(std::string_view line);

    /// Reads as LogRing::read() does. Returns nothing if the lock or the memory is not available.
    std::optional<LogRing::Excerpt> read(std::span<char> buffer, unsigned start);

    /// Call these around a fork: before it, and after it in each process.
    void beforeFork() { lock.lockThreads(); }
    void afterForkInParent() { lock.unlockThreads(); }
    void afterForkInChild();

private:
    SharedLog(SharedMemory object, Mapping view);

    bool isFullyAllocated();
    bool ready() { return isFullyAllocated() && ring.prepare(); }
    bool isLogOrBusy();

    // flock() belongs to the open file description, so this process needs its own. The mapping's description
    // is shared with forked children, which would keep the lock of a parent that died.
    SharedMemory memory;
    Mapping mapping;
    LogLock lock;
    LogRing ring;
};

}  // namespace HostBoard
