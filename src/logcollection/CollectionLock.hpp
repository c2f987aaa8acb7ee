#pragma once

#include <chrono>
#include <string>

#include "UniqueFd.hpp"
#include "Wait.hpp"

namespace Korvel {

/// Holds an exclusive lock on the work directory from construction to destruction, because concurrent
/// collections would take each other's replies and dumps. The lock is advisory (flock): if it is not
/// available in time, the collection runs without it. If another process replaces the directory, waiting
/// collections wait for the current holder, and then lock the new directory.
class CollectionLock {
public:
    /// Creates `directory` if it is missing. Waits at most `limit` for another holder and reports that wait
    /// once on standard error.
    CollectionLock(const std::string& directory, std::chrono::milliseconds limit);

private:
    bool lock();
    void reportWait();

    const std::string path;
    const Deadline deadline;
    Base::UniqueFd folder;
    bool waitReported = false;
};

}  // namespace Korvel
