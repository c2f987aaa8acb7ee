#pragma once

#include <string>

#include "Peer.hpp"
#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A process that writes to a shared-memory log: one entry when it starts, one every second from then on.
/// Stays idle where the log cannot be had.
class SmLogPeer : public Peer {
public:
    /// The board's two logs.
    static constexpr const char* dispatcher = "dispatcher_log_memory";
    static constexpr const char* systemLibrary = "syslib_log_memory";

    SmLogPeer(const char* logName, std::string tagName);

    int descriptor() const override { return timer.get(); }
    void serve() override;

private:
    SmLog* log;  // the library's
    std::string tag;
    Base::UniqueFd timer;
    unsigned long long seconds = 0;
};

/// Writes to the log `logName` until it holds as much as it can.
void fillSmLog(const char* logName);

}  // namespace Boardsim
