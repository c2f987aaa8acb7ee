#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "HeartbeatRespStatus.hpp"
#include "IManager.hpp"
#include "Log.hpp"
#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// "supervision": requests a heartbeat of the selected dispatcher instances and of netfp_proxy in each cycle.
/// After a healthy cycle, it reports nothing and pauses for four seconds. After a cycle in which no datagram
/// arrived for two seconds, the next cycle starts immediately.
///
/// Supervision stops
/// - after ten such time-outs in a row,
/// - after an error response, or a response of an unknown dispatcher,
/// - if responses are still missing after ten seconds,
/// - if receiving fails.
///
/// Reports go to the dispatcher's shared-memory log (tag "Supervision") and to the system log, in every mode.
/// The status line of an unhealthy cycle also goes to standard error.
class SupervisionMgr : public IManager {
public:
    /// The results of a cycle.
    static constexpr int allHealthy = 0;
    static constexpr int timedOut = 1;
    static constexpr int stop = 2;

    SupervisionMgr();

    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Supervises until there is a reason to stop. Always returns false.
    bool run() override;

    // The steps of run().

    /// Opens the log and a netlink socket with this process's id as port id. Returns false if the socket
    /// cannot be opened, which is logged, or if no dispatcher instance is selected, which is not.
    bool initialize();

    /// Runs cycles until there is a reason to stop. This and the steps of a cycle require a successful
    /// initialize().
    void heartbeatMonitor();

    // The steps of a cycle. They use the current sequence numbers.

    void sendDispatcherHeartbeatReq(int portId);

    /// Increments netfp_proxy's sequence number first.
    void sendNetfpProxyHearbeatReq();

    /// Collects the responses; reports and drops other datagrams. Returns `timedOut` after two seconds
    /// without any datagram. When all peers have answered or ten seconds have passed, returns `allHealthy` or
    /// `stop`.
    int waitForHeartbeatsResp();

    /// Closes the socket if it is open.
    void cleanup();

    /// Returns one line about the supervised peers, without a line end.
    std::string getStatusStr(const HeartbeatRespStatus& status) const;

    /// Logs one record. `level` is a LogLvl. `format` and its arguments are as for printf, without a line
    /// end. Before initialize(), writes only to the system log.
    void logf(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

private:
    struct HeartbeatResponse;

    /// Sequence numbers identify the peer of a response. Both increase together, so they are never equal.
    struct NetlinkSeqNumber {
        std::uint32_t dispatcher = 0;
        std::uint32_t netfpProxy = 100;
    };

    bool handleResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                        std::uint32_t& remaining);
    bool handleDispatcherResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                                  std::uint32_t& remaining);
    std::optional<int> receive(HeartbeatResponse& response, std::size_t& size);
    int evaluateCycle(const HeartbeatRespStatus& status);

    bool iwfSelected = false;
    bool sfnSelected = false;
    std::uint32_t expectedResponses = 2;
    Base::UniqueFd netlinkFd;
    NetlinkSeqNumber seqNumber;
    SmLog* logClient = nullptr;  // owned by the library
};

}  // namespace Korvel
