#include "StandardStreams.hpp"

#include <fcntl.h>

#include "UniqueFd.hpp"

namespace Korvel {
namespace {

/// Child processes are to have the standard descriptors, so this one stays open over exec.
UniqueFd openNull() {
    return UniqueFd(::open("/dev/null", O_RDWR));  // NOLINT(android-cloexec-open)
}

}  // namespace

void openMissingStandardStreams() {
    UniqueFd lowestFree = openNull();
    while (lowestFree && lowestFree.get() <= STDERR_FILENO) {
        static_cast<void>(lowestFree.release());
        lowestFree = openNull();
    }
}

}  // namespace Korvel
