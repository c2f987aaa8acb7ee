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

/// A log in shared memory, which any number of processes and threads write and read at once. Every
/// operation checks afresh, under the lock, that the memory holds a log, since the object below /dev/shm
/// is within everybody's reach: one that was emptied becomes an empty log again, one that was cut or
/// overwritten takes and gives nothing.
class SharedLog {
public:
    /// Opens the log `name`, a file name below /dev/shm; creates it where it is missing or empty. Null
    /// where that fails, or where something else than a log has that name.
    static std::unique_ptr<SharedLog> open(const std::string& name);

    /// Adds an entry as LogRing::append() does. False when the lock or the memory cannot be had; the
    /// entry is then dropped.
    bool append(std::string_view line);

    /// Reads as LogRing::read() does. Nothing when the lock or the memory cannot be had.
    std::optional<LogRing::Excerpt> read(std::span<char> buffer, unsigned start);

    /// To be called around a fork, before and in both processes after it.
    void beforeFork() { lock.excludeThreads(); }
    void afterForkInParent() { lock.admitThreads(); }
    void afterForkInChild();

private:
    SharedLog(SharedMemory object, Mapping place);

    bool backed();
    bool ready() { return backed() && ring.prepare(); }
    bool maybeLog();

    // Its open file is the owner of the lock. So it is this process's alone, and not even the mapping's,
    // which a forked child keeps: else the child would hold what a parent held that died.
    SharedMemory memory;
    Mapping mapping;
    LogLock lock;
    LogRing ring;
};

}  // namespace HostBoard
