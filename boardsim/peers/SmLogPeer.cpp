#include "SmLogPeer.hpp"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace Boardsim {
namespace {

constexpr AppID application = 3;
constexpr std::chrono::milliseconds interval{100};  // with traffic

/// So that the lines of a second are written within a second.
constexpr std::size_t linesPerInterval = 450;

}  // namespace

SmLogPeer::SmLogPeer(const char* logName, std::string processName, const Scenario& scenario)
    : log(SmLog::getClientInstance(logName, application)),
      process(std::move(processName)),
      traffic(scenario.traffic.isOn()
                  ? std::optional(Traffic{.clock = TrafficClock(), .log = {scenario, process}})
                  : std::nullopt),
      timer(traffic ? traffic->clock.untilNextSecond() : std::chrono::seconds(1),
            traffic ? interval : std::chrono::seconds(1)) {
    write({LogLevel::debug, "started"});
    if (traffic) {
        writeTraffic(std::numeric_limits<std::size_t>::max());
    }
}

void SmLogPeer::serve() {
    seconds += timer.passed();
    if (traffic) {
        writeTraffic(linesPerInterval);
    } else {
        write({LogLevel::debug, "in service for " + std::to_string(seconds) + " s"});
    }
}

void SmLogPeer::write(const LogLine& line) {
    if (log != nullptr) {
        log->write(static_cast<int>(line.level), process.c_str(), "%s", line.text.c_str());
    }
}

/// If the process is too slow, lines of the earlier second are lost.
void SmLogPeer::writeTraffic(std::size_t mostLines) {
    const std::uint64_t second = traffic->clock.second();
    if (std::exchange(traffic->second, second) != second) {
        traffic->lines = traffic->log.linesUpTo(second);
        traffic->written = 0;
    }
    const std::size_t rest = traffic->lines.size() - traffic->written;
    const std::size_t end = traffic->written + std::min(rest, mostLines);
    for (; traffic->written < end; ++traffic->written) {
        write(traffic->lines[traffic->written]);
    }
}

void fillSmLog(const char* logName) {
    constexpr int capacity = 2 << 20;
    constexpr int entryLength = 1000;
    SmLog* log = SmLog::getClientInstance(logName, application);
    for (int written = 0; log != nullptr && written < capacity; written += entryLength) {
        log->write(static_cast<int>(LogLevel::debug), "filler", "entry %7d %0*d", written / entryLength,
                   entryLength, 0);
    }
}

}  // namespace Boardsim
