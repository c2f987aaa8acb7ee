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

/// "supervision": asks the selected dispatcher instances and netfp_proxy for a heartbeat, cycle after cycle.
/// A healthy cycle leaves no trace and is followed by a pause of four seconds; one in which nothing came for
/// two seconds is followed by the next at once. It ends with the tenth of those in a row, with an answer that
/// is an error or from an unknown dispatcher, with answers that are still missing after ten seconds, and
/// where nothing can be received. Reports go to the dispatcher's shared-memory log (tag "Supervision") and to
/// the system log, in whatever mode. The status line of an unhealthy cycle goes to standard error as well.
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
    /// steps of a cycle.
    void heartbeatMonitor();

    // The steps of a cycle, whose sequence numbers are the current ones.

    void sendDispatcherHeartbeatReq(int portId);

    /// Goes on to netfp_proxy's next sequence number first.
    void sendNetfpProxyHearbeatReq();

    /// Collects the answers; others are reported and dropped. `timedOut` after two seconds without any
    /// datagram; else, when all have answered or ten seconds have passed, `allHealthy` or `stop`.
    int waitForHeartbeatsResp();

    /// Closes the socket, where there is one.
    void cleanup();

    /// One line about the peers that are supervised, without line end.
    std::string getStatusStr(const HeartbeatRespStatus& status) const;

    /// `level` is a LogLvl. `format` and what follows are as for printf, without a line end. Before
    /// initialize(), the system log alone is written.
    void logf(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

private:
    struct HeartbeatResponse;

    /// Answers are told apart by their sequence numbers, which go up together and so never meet.
    struct NetlinkSeqNumber {
        std::uint32_t dispatcher = 0;
        std::uint32_t netfpProxy = 100;
    };

    bool takeResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                      std::uint32_t& remaining);
    bool takeDispatcherResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                                std::uint32_t& remaining);
    std::optional<int> receive(HeartbeatResponse& response, std::size_t& size);
    int concludeCycle(const HeartbeatRespStatus& status);

    bool iwfSelected = false;
    bool sfnSelected = false;
    std::uint32_t expectedResponses = 2;
    Base::UniqueFd netlinkFd;
    NetlinkSeqNumber seqNumber;
    SmLog* logClient = nullptr;  // the library's
};

}  // namespace Korvel
