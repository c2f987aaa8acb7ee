#include "IdentifierSeed.hpp"

#include <cstdlib>

#include <sys/random.h>
#include <unistd.h>

#include "WallClock.hpp"

namespace Korvel {
namespace {

/// Returns a seed that differs between runs even if the kernel's random source is not ready.
unsigned fallbackSeed() {
    const auto time = wallClockNow().time_since_epoch().count();
    return static_cast<unsigned>(time) ^ static_cast<unsigned>(::getpid());
}

}  // namespace

void seedRequestIdentifiers() {
    unsigned seed = 0;
    if (::getrandom(&seed, sizeof seed, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof seed)) {
        seed = fallbackSeed();
    }
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): identifiers must differ, but need not be unpredictable
    std::srand(seed);
}

}  // namespace Korvel
