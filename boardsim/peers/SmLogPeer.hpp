#pragma once

#include <string>

#include "Peer.hpp"
#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// A process that writes to a shared-memory log: one entry at the start, then one per second. Does nothing if
/// the log cannot be opened.
class SmLogPeer : public Peer {
public:
    static constexpr const char* dispatcher = "dispatcher_log_memory";
    static constexpr const char* systemLibrary = "syslib_log_memory";

    SmLogPeer(const char* logName, std::string tagName);

    int descriptor() const override { return timer.get(); }
    void serve() override;

private:
    SmLog* log;  // owned by the library
    std::string tag;
    Base::UniqueFd timer;
    unsigned long long seconds = 0;
};

/// Fills the log `logName` to its capacity.
void fillSmLog(const char* logName);

}  // namespace Boardsim
