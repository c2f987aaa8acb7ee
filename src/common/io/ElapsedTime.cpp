#include "ElapsedTime.hpp"

#include "WallClock.hpp"

namespace Korvel {

using std::chrono::steady_clock;

ElapsedTime::ElapsedTime() : wallStart(wallClockNow()), steadyStart(steady_clock::now()) {
}

bool ElapsedTime::exceeds(std::chrono::milliseconds limit) const {
    return wallClockNow() - wallStart > limit || steady_clock::now() - steadyStart > limit;
}

}  // namespace Korvel
