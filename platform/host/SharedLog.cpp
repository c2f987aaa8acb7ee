#include "SharedLog.hpp"

#include <utility>

namespace HostBoard {

std::unique_ptr<SharedLog> SharedLog::open(const std::string& name) {
    SharedMemory memory(("/" + name).c_str());
    Mapping mapping = memory.map(0, LogRing::memorySize);
    if (!mapping || !memory.reopen()) {
        return nullptr;
    }
    std::unique_ptr<SharedLog> log(new SharedLog(std::move(memory), std::move(mapping)));
    return log->isLogOrBusy() ? std::move(log) : nullptr;
}

SharedLog::SharedLog(SharedMemory object, Mapping view)
    : memory(std::move(object)), mapping(std::move(view)), lock(memory), ring(mapping.bytes()) {
}

/// Returns true if the memory contains a log, or if the lock is busy and the memory cannot be checked.
bool SharedLog::isLogOrBusy() {
    const LogLock::Hold hold(lock);
    return !hold || ready();
}

bool SharedLog::append(std::string_view line) {
    const LogLock::Hold hold(lock);
    if (!hold || !ready()) {
        return false;
    }
    ring.append(line);
    return true;
}

std::optional<LogRing::Excerpt> SharedLog::read(std::span<char> buffer, unsigned start) {
    const LogLock::Hold hold(lock);
    if (!hold || !ready()) {
        return std::nullopt;
    }
    return ring.read(buffer, start);
}

void SharedLog::afterForkInChild() {
    static_cast<void>(memory.reopen());  // if it fails, the child's operations fail
    lock.unlockThreads();
}

/// Returns true if the object has the length of a log and all its memory is allocated.
bool SharedLog::isFullyAllocated() {
    const std::optional<SharedMemory::Extent> extent = memory.extent();
    if (!extent || (extent->length != 0 && extent->length != LogRing::memorySize)) {
        return false;
    }
    return extent->allocated >= LogRing::memorySize || memory.reserve(0, LogRing::memorySize);
}

}  // namespace HostBoard
