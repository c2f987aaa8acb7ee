#include "CollectionLock.hpp"

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>

#include "Console.hpp"
#include "SystemCall.hpp"
#include "TrustedOpen.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::milliseconds retryInterval{50};
constexpr mode_t folderMode = 0777;

/// Returns true if `path` no longer refers to `folder`, because another process removed the directory.
bool wasReplaced(const Base::UniqueFd& folder, const std::string& path) {
    struct stat opened {};
    struct stat current {};
    return ::fstat(folder.get(), &opened) != 0 || ::stat(path.c_str(), &current) != 0 ||
           opened.st_dev != current.st_dev || opened.st_ino != current.st_ino;
}

}  // namespace

CollectionLock::CollectionLock(const std::string& directory, std::chrono::milliseconds limit)
    : path(directory), deadline(deadlineIn(limit)) {
    do {
        ::mkdir(path.c_str(), folderMode);
        folder = openTrustedFolder(path);
    } while (folder && lock() && wasReplaced(folder, path) && !hasPassed(deadline));
}

/// Returns false if the lock is not available before the deadline. Polls, because flock() has no time-out.
bool CollectionLock::lock() {
    const auto tryOnce = [&] {
        return Base::uninterrupted([&] { return ::flock(folder.get(), LOCK_EX | LOCK_NB); }) == 0;
    };
    bool locked = tryOnce();
    while (!locked && errno == EWOULDBLOCK && !hasPassed(deadline)) {
        reportWait();
        nap(retryInterval);
        locked = tryOnce();
    }
    return locked;
}

void CollectionLock::reportWait() {
    if (!waitReported) {
        fail("Another log collection is running, waiting for its end");
    }
    waitReported = true;
}

}  // namespace Korvel
