#include "CollectionLock.hpp"

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>

#include "Console.hpp"
#include "SystemCall.hpp"
#include "TrustedOpen.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::milliseconds tryInterval{50};
constexpr mode_t folderMode = 0777;

/// flock() knows no deadline, so it is tried.
bool tryToLock(const UniqueFd& folder) {
    return uninterrupted([&] { return ::flock(folder.get(), LOCK_EX | LOCK_NB); }) == 0;
}

}  // namespace

CollectionLock::CollectionLock(const std::string& directory, std::chrono::milliseconds limit) {
    ::mkdir(directory.c_str(), folderMode);
    folder = openTrustedFolder(directory);
    if (tryToLock(folder) || errno != EWOULDBLOCK) {
        return;
    }
    fail("Another log collection is running, waiting for its end");
    const Deadline deadline = deadlineIn(limit);
    while (!hasPassed(deadline) && !tryToLock(folder)) {
        nap(tryInterval);
    }
}

}  // namespace Korvel
