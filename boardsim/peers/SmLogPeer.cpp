#include "SmLogPeer.hpp"

#include <chrono>
#include <utility>

namespace Boardsim {
namespace {

constexpr AppID application = 3;

}  // namespace

SmLogPeer::SmLogPeer(const char* logName, std::string processName, const Scenario& scenario)
    : log(SmLog::getClientInstance(logName, application)),
      process(std::move(processName)),
      traffic(scenario.traffic.isOn() ? std::optional(Traffic{TrafficClock(), {scenario, process}})
                                      : std::nullopt),
      timer(traffic ? traffic->clock.untilNextSecond() : std::chrono::seconds(1)) {
    write({LogLevel::debug, "started"});
    if (traffic) {
        writeTraffic();
    }
}

void SmLogPeer::serve() {
    seconds += timer.passed();
    if (traffic) {
        writeTraffic();
    } else {
        write({LogLevel::debug, "in service for " + std::to_string(seconds) + " s"});
    }
}

void SmLogPeer::write(const LogLine& line) {
    if (log != nullptr) {
        log->write(static_cast<int>(line.level), process.c_str(), "%s", line.text.c_str());
    }
}

void SmLogPeer::writeTraffic() {
    traffic->entries.upTo(traffic->clock.second(), [this](const LogLine& line) { write(line); });
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
