#pragma once

#include <cstdint>
#include <string>

#include "HeartbeatRespStatus.hpp"
#include "IManager.hpp"
#include "Log.hpp"
#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// "supervision": asks the selected dispatcher instances and netfp_proxy for a heartbeat every four seconds,
/// until one answers with an error, ten cycles in a row run out of time, or the transport fails. A healthy
/// cycle leaves no trace.
/// Reports go to the dispatcher's shared-memory log (tag "Supervision") and to the system log, in whatever
/// mode; the status that ends the supervision goes to standard error as well.
class SupervisionMgr : public IManager {
public:
    /// How a cycle ended.
    static constexpr int allHealthy = 0;
    static constexpr int timedOut = 1;
    static constexpr int stop = 2;

    SupervisionMgr();

    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Supervises until there is a reason to stop, and so is always false.
    bool run() override;

    // The steps of run().

    /// Opens the log and a netlink socket with this process's id as port id. False, with the reason logged,
    /// where the socket cannot be had; false without a word where no dispatcher instance is selected.
    bool initialize();

    /// Cycle after cycle, until there is a reason to stop. Needs an initialize() that succeeded, as do the
    /// next three.
    void heartbeatMonitor();

    void sendDispatcherHeartbeatReq(int portId);

    /// Goes on to netfp_proxy's next sequence number first.
    void sendNetfpProxyHearbeatReq();

    /// Collects the answers to the current sequence numbers; two seconds without any datagram end the wait,
    /// and ten seconds in all. `allHealthy`, `timedOut` or `stop`.
    int waitForHeartbeatsResp();

    void cleanup();

    /// One line about the peers that are supervised, without line end.
    std::string getStatusStr(const HeartbeatRespStatus& status) const;

    /// `format` and what follows are as for printf, without a line end.
    void logf(LogLvl level, const char* format, ...) __attribute__((format(printf, 3, 4)));

private:
    struct HeartbeatResponse;

    /// Answers are told apart by their sequence numbers, which start too far apart ever to meet.
    struct NetlinkSeqNumber {
        std::uint32_t dispatcher = 0;
        std::uint32_t netfpProxy = 100;
    };

    bool takeResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                      std::uint32_t& remaining);
    bool takeDispatcherResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                                std::uint32_t& remaining);
    int abandonCycle(int result, const HeartbeatRespStatus& status);
    int concludeCycle(const HeartbeatRespStatus& status);

    bool iwfSelected = false;
    bool sfnSelected = false;
    std::uint32_t expectedResponses = 2;
    UniqueFd netlinkFd;
    NetlinkSeqNumber seqNumber;
    SmLog* logClient = nullptr;  // the library's
};

}  // namespace Korvel
