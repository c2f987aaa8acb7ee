#include "SupervisionMgr.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <span>

#include "Configuration.hpp"
#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "ElapsedTime.hpp"
#include "FastPathNetlink.hpp"
#include "FileAccess.hpp"
#include "Invariant.hpp"
#include "NetlinkSocket.hpp"
#include "SmLogs.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr AppID logApplication = 5;  // interpreted only by the log library
constexpr unsigned maximumConsecutiveTimeouts = 10;
constexpr seconds cyclePause{4};
constexpr milliseconds responseTimeout{2000};
constexpr milliseconds cycleLimit{10000};

HeartbeatRespStatus::Status statusOf(const FastPath_HeartbeatResp& response) {
    return response.status == 0 ? HeartbeatRespStatus::OK : HeartbeatRespStatus::ERROR;
}

bool sendRequest(int socket, FastPath_MessageType messageType, std::uint32_t portId, std::uint32_t sequence) {
    const FastPath_HeartbeatReq request{.messageType = messageType};
    return Util::sendNetlinkMessage(socket, std::as_bytes(std::span(&request, 1)), portId, sequence);
}

}  // namespace

struct SupervisionMgr::HeartbeatResponse {
    nlmsghdr header;
    FastPath_HeartbeatResp payload;
};

SupervisionMgr::SupervisionMgr() : IManager("Supervision") {
}

bool SupervisionMgr::detectKeywords(int argc, char** argv) {
    return argc >= 2 && std::strcmp(argv[1], "supervision") == 0;
}

void SupervisionMgr::printHelpMsg(const std::string& indent, const std::string& programName) {
    print("  Supervision:\n");
    print(indent, "== Examples ==\n");
    print(indent, "  ", programName, "  supervision\n\n");
}

bool SupervisionMgr::run() {
    dismissFileHelper();
    if (initialize()) {
        logf(logInformation, "Starting supervision of dispatcher%s%s and netfp_proxy",
             iwfSelected ? " IWF" : "", sfnSelected ? " SFN" : "");
        heartbeatMonitor();
    }
    cleanup();
    return false;
}

bool SupervisionMgr::initialize() {
    logClient = SmLog::getClientInstance(dispatcherLogName, logApplication);
    requireInvariant(nullptr != logClient, "nullptr != logClient", "SupervisionMgr");
    netlinkFd = Util::openNetlinkSocket();
    if (!netlinkFd) {
        logf(logError, "Error while creating netlink socket, errno: %s", std::strerror(errno));
        return false;
    }
    if (!Util::bindNetlinkSocket(netlinkFd.get())) {
        logf(logError, "Error while binding netlink socket, errno: %s", std::strerror(errno));
        return false;
    }
    for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
         ++instance) {
        (*instance == Configuration::IWF ? iwfSelected : sfnSelected) = true;
    }
    expectedResponses = Configuration::getInstanceCount() + 1;  // and netfp_proxy
    return expectedResponses > 1;
}

void SupervisionMgr::heartbeatMonitor() {
    for (unsigned timeouts = 0; timeouts < maximumConsecutiveTimeouts;) {
        ++seqNumber.dispatcher;
        if (iwfSelected) {
            sendDispatcherHeartbeatReq(FASTPATH_IWF_DISPATCHER_PORT_ID);
        }
        if (sfnSelected) {
            sendDispatcherHeartbeatReq(FASTPATH_SFN_DISPATCHER_PORT_ID);
        }
        sendNetfpProxyHearbeatReq();
        switch (waitForHeartbeatsResp()) {
            case allHealthy:
                timeouts = 0;
                nap(cyclePause);
                break;
            case timedOut:
                ++timeouts;
                break;
            default:
                return;
        }
    }
}

void SupervisionMgr::sendDispatcherHeartbeatReq(int portId) {
    if (!sendRequest(netlinkFd.get(), FASTPATH_DISPATCHER_HEARTBEAT_REQ, static_cast<std::uint32_t>(portId),
                     seqNumber.dispatcher)) {
        logf(logError, "Error while sending heartbeat request to dispatcher, errno: %s",
             std::strerror(errno));
    }
}

void SupervisionMgr::sendNetfpProxyHearbeatReq() {
    ++seqNumber.netfpProxy;
    if (!sendRequest(netlinkFd.get(), FASTPATH_NETFP_PROXY_HEARTBEAT_REQ, FASTPATH_NETFP_PROXY_PORT_ID,
                     seqNumber.netfpProxy)) {
        logf(logError, "Error while sending heartbeat request to netfp proxy, errno: %s",
             std::strerror(errno));
    }
}

int SupervisionMgr::waitForHeartbeatsResp() {
    HeartbeatRespStatus status;
    std::uint32_t remaining = expectedResponses;
    bool expired = false;
    const ElapsedTime time;
    while (remaining >= 1 && !expired) {
        HeartbeatResponse response{};
        static_assert(sizeof response == 24);
        std::size_t size = 0;
        const std::optional<int> end = receive(response, size);
        expired = time.exceeds(cycleLimit);
        if (end) {
            logf(logInformation, "%s", getStatusStr(status).c_str());
            return *end;
        }
        if (size != sizeof response) {
            logf(logError, "Unexpected message size: %u", static_cast<unsigned>(size));
        } else if (!handleResponse(response, status, remaining)) {
            return stop;
        }
    }
    return evaluateCycle(status);
}

/// Receives the next datagram, cut to the size of a response. If there is none, reports the reason and
/// returns the result of the cycle.
std::optional<int> SupervisionMgr::receive(HeartbeatResponse& response, std::size_t& size) {
    const auto room = std::as_writable_bytes(std::span(&response, 1));
    switch (receiveDatagram(netlinkFd.get(), room, deadlineIn(responseTimeout), size)) {
        case Arrival::timedOut:
            logf(logError, "poll(): Timed out while waiting for response");
            return timedOut;
        case Arrival::waitFailed:
            logf(logError, "poll(): An error occured, errno: %s", std::strerror(errno));
            return stop;
        case Arrival::receiveFailed:
            logf(logError, "recv(): An error occured, errno: %s", std::strerror(errno));
            return stop;
        case Arrival::datagram:
            break;
    }
    if (size == 0) {
        logf(logError, "recv(): Peer has performed an orderly shutdown");
        return stop;
    }
    return std::nullopt;
}

/// Returns false if supervision must stop. Datagrams that do not answer a request of this cycle are only
/// reported.
bool SupervisionMgr::handleResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                                    std::uint32_t& remaining) {
    if (response.header.nlmsg_seq == seqNumber.dispatcher) {
        return handleDispatcherResponse(response, status, remaining);
    }
    if (response.header.nlmsg_seq != seqNumber.netfpProxy) {
        logf(logError, "Unexpected netlink sequence number: %u", response.header.nlmsg_seq);
    } else if (response.payload.messageType != FASTPATH_NETFP_PROXY_HEARTBEAT_RESP) {
        logf(logError, "NetfpProxy Heartbeat: unexpected return message type");
    } else {
        --remaining;
        status.netfpProxy = statusOf(response.payload);
    }
    return true;
}

bool SupervisionMgr::handleDispatcherResponse(const HeartbeatResponse& response, HeartbeatRespStatus& status,
                                              std::uint32_t& remaining) {
    if (response.payload.messageType != FASTPATH_DISPATCHER_HEARTBEAT_RESP) {
        logf(logError, "Dispatcher Heartbeat: unexpected return message type");
        return true;
    }
    --remaining;
    switch (response.header.nlmsg_pid) {
        case FASTPATH_IWF_DISPATCHER_PORT_ID:
            status.iwf = statusOf(response.payload);
            return true;
        case FASTPATH_SFN_DISPATCHER_PORT_ID:
            status.sfn = statusOf(response.payload);
            return true;
        default:
            logf(logError, "Invalid dispatcher PID received: %u", response.header.nlmsg_pid);
            return false;
    }
}

int SupervisionMgr::evaluateCycle(const HeartbeatRespStatus& status) {
    if ((!iwfSelected || status.iwf == HeartbeatRespStatus::OK) &&
        (!sfnSelected || status.sfn == HeartbeatRespStatus::OK) &&
        status.netfpProxy == HeartbeatRespStatus::OK) {
        return allHealthy;
    }
    const std::string line = getStatusStr(status);
    fail(line);
    logf(logError, "%s", line.c_str());
    return stop;
}

void SupervisionMgr::cleanup() {
    if (!netlinkFd.close()) {
        logf(logError, "Error while closing netlink socket, errno: %s", std::strerror(errno));
    }
}

std::string SupervisionMgr::getStatusStr(const HeartbeatRespStatus& status) const {
    constexpr std::size_t size = 256;
    std::array<char, size> line{};
    const auto text = [](bool selected, HeartbeatRespStatus::Status value) {
        return selected ? HeartbeatRespStatus::toString(value) : "";
    };
    std::snprintf(line.data(), line.size(), "Heartbeat status:%s%s%s%s NetfpProxy: %s",
                  iwfSelected ? " IWF Dispatcher:" : "", text(iwfSelected, status.iwf).c_str(),
                  sfnSelected ? " SFN Dispatcher:" : "", text(sfnSelected, status.sfn).c_str(),
                  HeartbeatRespStatus::toString(status.netfpProxy).c_str());
    return line.data();
}

void SupervisionMgr::logf(int level, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list argumentsCopy;
    va_copy(argumentsCopy, arguments);
    if (logClient != nullptr) {
        logClient->vwrite(level, "Supervision", format, arguments);
    }
    logToSystem(level, format, argumentsCopy);
    va_end(argumentsCopy);
    va_end(arguments);
}

}  // namespace Korvel
