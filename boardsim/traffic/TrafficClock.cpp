#include "TrafficClock.hpp"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "BoardPaths.hpp"
#include "TextFile.hpp"
#include "WholeNumber.hpp"

namespace Boardsim {
namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

nanoseconds monotonicTime() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

nanoseconds readStart() {
    const std::string text = readTextFile(BoardPaths::trafficStart);
    const auto number = wholeNumber<std::int64_t>(std::string_view(text).substr(0, text.find('\n')));
    if (!number) {
        throw std::runtime_error(std::string(BoardPaths::trafficStart) + " contains no number");
    }
    return nanoseconds(*number);
}

}  // namespace

std::string TrafficClock::startText(const Traffic& traffic) {
    return std::to_string((monotonicTime() - seconds(traffic.headStart)).count()) + "\n";
}

TrafficClock::TrafficClock() : start(readStart()) {
}

nanoseconds TrafficClock::elapsed() const {
    return std::max(nanoseconds(0), monotonicTime() - start);
}

std::uint64_t TrafficClock::second() const {
    return static_cast<std::uint64_t>(std::chrono::floor<seconds>(elapsed()).count());
}

nanoseconds TrafficClock::untilNextSecond() const {
    return seconds(1) - elapsed() % seconds(1);
}

}  // namespace Boardsim
