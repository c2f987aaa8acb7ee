#pragma once

#include <chrono>
#include <string>

#include "UniqueFd.hpp"

namespace Korvel {

/// Keeps other collections away from the work directory, from construction to destruction: two at once would
/// take each other's replies and dumps. The lock is advisory (flock) and never stops a collection: one that
/// cannot be had in time is done without.
class CollectionLock {
public:
    /// Creates `directory` where it is missing, and waits at most `limit` while another holds it, which is
    /// reported on standard error.
    CollectionLock(const std::string& directory, std::chrono::milliseconds limit);

private:
    UniqueFd folder;
};

}  // namespace Korvel
