#pragma once

#include <chrono>
#include <string>

#include "UniqueFd.hpp"
#include "Wait.hpp"

namespace Korvel {

/// Keeps other collections away from the work directory, from construction to destruction: two at once would
/// take each other's replies and dumps. The lock is advisory (flock) and never stops a collection: one that
/// cannot be had in time is done without. Where the directory is removed meanwhile, those that wait go on
/// waiting for whoever locked it, and then for whoever locked the one in its place.
class CollectionLock {
public:
    /// Creates `directory` where it is missing, and waits at most `limit` while another holds it, which is
    /// reported on standard error, once.
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
