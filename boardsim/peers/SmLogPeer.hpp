#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "IntervalTimer.hpp"
#include "Peer.hpp"
#include "SmLog.hpp"
#include "TrafficClock.hpp"
#include "TrafficLog.hpp"

namespace Boardsim {

/// A process that writes to a shared-memory log: one entry at the start, then entries every second. Does
/// nothing if the log cannot be opened.
class SmLogPeer : public Peer {
public:
    static constexpr const char* dispatcher = "dispatcher_log_memory";
    static constexpr const char* systemLibrary = "syslib_log_memory";

    /// With traffic, `process` is one that TrafficLog knows. Its entries about the traffic before the board's
    /// start follow the first entry. Throws as TrafficClock.
    SmLogPeer(const char* logName, std::string processName, const Scenario& scenario);

    int descriptor() const override { return timer.descriptor(); }
    void serve() override;

private:
    /// Many entries of one second are written in several pieces, so that the process can answer requests in
    /// between.
    struct Traffic {
        TrafficClock clock;
        TrafficLog log;
        std::uint64_t second = 0;  // the last one with lines
        LogLines lines = {};
        std::size_t written = 0;  // lines
    };

    void write(const LogLine& line);
    void writeTraffic(std::size_t mostLines);

    SmLog* log;  // owned by the library
    std::string process;
    std::optional<Traffic> traffic;
    IntervalTimer timer;
    unsigned long long seconds = 0;
};

/// Fills the log `logName` to its capacity.
void fillSmLog(const char* logName);

}  // namespace Boardsim
