#include "NetlinkPeer.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include <linux/netlink.h>

#include "FaultHandlers.hpp"

namespace Boardsim {
namespace {

constexpr std::uint16_t netlinkType = 1;     // the message type is the first word of the payload
constexpr std::uint32_t wrongOffset = 1000;  // far from every number in use

std::uint32_t portIdOf(const Sender& sender) {
    sockaddr_nl address{};
    std::memcpy(&address, &sender.address, sizeof address);
    return address.nl_pid;
}

/// All zeros if the datagram is too short.
nlmsghdr headerOf(const Datagram& request) {
    nlmsghdr header{};
    std::memcpy(&header, request.bytes.data(), std::min(request.bytes.size(), sizeof header));
    return header;
}

std::string_view payloadOf(const Datagram& request) {
    return std::string_view(request.bytes).substr(std::min(request.bytes.size(), sizeof(nlmsghdr)));
}

std::string sequenceText(const nlmsghdr& header) {
    return "sequence " + std::to_string(header.nlmsg_seq) + ": ";
}

bool headerMatchesDatagram(const nlmsghdr& header, const Datagram& request) {
    return header.nlmsg_len == request.bytes.size() && header.nlmsg_type == netlinkType &&
           header.nlmsg_flags == 0 && header.nlmsg_pid == portIdOf(request.sender);
}

}  // namespace

struct NetlinkPeer::Response {
    nlmsghdr header;
    std::uint32_t messageType;
    std::uint32_t status;

    std::string_view bytes() const { return {reinterpret_cast<const char*>(this), sizeof *this}; }
};

struct NetlinkPeer::Handlers {
    static constexpr int mostStatus = std::numeric_limits<int>::max();
    static constexpr int leastSize = 1;  // netlink carries no empty datagram
    static constexpr std::array rows{
        FaultHandler<Handler>{{}, &NetlinkPeer::sendCorrect},
        FaultHandler<Handler>{{"silent", "sends no answer"}, &NetlinkPeer::sendNothing},
        FaultHandler<Handler>{{"slow", "answers MS milliseconds late", "MS", 0, longestDelayMs},
                              &NetlinkPeer::sendLate},
        FaultHandler<Handler>{
            {"error", "answers with this status, whatever the peer did", "STATUS", 1, mostStatus},
            &NetlinkPeer::sendError},
        FaultHandler<Handler>{{"stale", "first sends an answer with the previous sequence number"},
                              &NetlinkPeer::sendStaleFirst},
        FaultHandler<Handler>{{"sequence", "answers with a sequence number that is 1000 too high"},
                              &NetlinkPeer::sendWrongSequence},
        FaultHandler<Handler>{{"type", "answers with a message type that is 1000 too high"},
                              &NetlinkPeer::sendWrongType},
        FaultHandler<Handler>{{"port", "answers with a port id that is 1000 too high"},
                              &NetlinkPeer::sendWrongPort},
        FaultHandler<Handler>{
            {"truncated", "sends only the first BYTES of the answer", "BYTES", leastSize, sizeof(Response)},
            &NetlinkPeer::sendTruncated},
        FaultHandler<Handler>{{"oversized", "sends 400 bytes instead of 24"}, &NetlinkPeer::sendOversized},
        FaultHandler<Handler>{{"dying", "dies at the first request"}, &NetlinkPeer::die},
    };
};

NetlinkPeer::NetlinkPeer(std::string_view processName, std::uint32_t ownPortId, std::vector<Service> offered,
                         Fault misbehaviour)
    : portId(ownPortId),
      services(std::move(offered)),
      fault(std::move(misbehaviour)),
      handler(findHandler<Handler>(Handlers::rows, fault)),
      socket(ServerSocket::atNetlinkPort(ownPortId)),
      record(processName),
      log(processName, fault) {
}

std::vector<FaultKind> NetlinkPeer::faultKinds() {
    return kindsOf<Handler>(Handlers::rows);
}

void NetlinkPeer::serve() {
    const Datagram request = socket.receive();
    record.addDatagram(request.bytes);
    const Service* service = findService(request);
    if (service == nullptr) {
        log.received("no request that it knows", request.bytes.size());
        log.note("no answer");
        return;
    }
    const Response response = answerTo(request, *service);
    log.received(sequenceText(response.header) + service->text(payloadOf(request)), request.bytes.size());
    (this->*handler)(response, request.sender);
}

const NetlinkPeer::Service* NetlinkPeer::findService(const Datagram& request) const {
    const std::string_view payload = payloadOf(request);
    std::uint32_t messageType = 0;
    if (payload.size() < sizeof messageType || !headerMatchesDatagram(headerOf(request), request)) {
        return nullptr;
    }
    std::memcpy(&messageType, payload.data(), sizeof messageType);
    const auto service = std::ranges::find(services, messageType, &Service::requestType);
    return service == services.end() || service->requestSize != payload.size() ? nullptr : &*service;
}

NetlinkPeer::Response NetlinkPeer::answerTo(const Datagram& request, const Service& service) const {
    return {.header = {.nlmsg_len = sizeof(Response),
                       .nlmsg_type = netlinkType,
                       .nlmsg_flags = 0,
                       .nlmsg_seq = headerOf(request).nlmsg_seq,
                       .nlmsg_pid = portId},
            .messageType = service.responseType,
            .status = service.status(payloadOf(request))};
}

void NetlinkPeer::send(const Response& response, std::string_view bytes, const Sender& sender) const {
    // First, because a client with the answer must find it in the log.
    log.answered(sequenceText(response.header) + "type " + std::to_string(response.messageType) +
                     ", status " + std::to_string(response.status) + ", from port id " +
                     std::to_string(response.header.nlmsg_pid),
                 bytes.size());
    if (!socket.send(bytes, sender)) {
        log.note(answerNotTaken);
    }
}

void NetlinkPeer::sendCorrect(const Response& response, const Sender& sender) const {
    send(response, response.bytes(), sender);
}

void NetlinkPeer::sendNothing(const Response& /*response*/, const Sender& /*sender*/) const {
    log.note("no answer");
}

void NetlinkPeer::sendLate(const Response& response, const Sender& sender) const {
    delayAnswer(fault);
    sendCorrect(response, sender);
}

void NetlinkPeer::sendError(const Response& response, const Sender& sender) const {
    Response refusal = response;
    refusal.status = static_cast<std::uint32_t>(fault.number);
    sendCorrect(refusal, sender);
}

void NetlinkPeer::sendStaleFirst(const Response& response, const Sender& sender) const {
    Response stale = response;
    --stale.header.nlmsg_seq;
    sendCorrect(stale, sender);
    sendCorrect(response, sender);
}

void NetlinkPeer::sendWrongSequence(const Response& response, const Sender& sender) const {
    Response wrong = response;
    wrong.header.nlmsg_seq += wrongOffset;
    sendCorrect(wrong, sender);
}

void NetlinkPeer::sendWrongType(const Response& response, const Sender& sender) const {
    Response wrong = response;
    wrong.messageType += wrongOffset;
    sendCorrect(wrong, sender);
}

void NetlinkPeer::sendWrongPort(const Response& response, const Sender& sender) const {
    Response wrong = response;
    wrong.header.nlmsg_pid += wrongOffset;
    sendCorrect(wrong, sender);
}

void NetlinkPeer::sendTruncated(const Response& response, const Sender& sender) const {
    send(response, response.bytes().substr(0, static_cast<std::size_t>(fault.number)), sender);
}

void NetlinkPeer::sendOversized(const Response& response, const Sender& sender) const {
    std::string bytes(response.bytes());
    bytes.resize(oversizedAnswer, '\xa5');
    send(response, bytes, sender);
}

void NetlinkPeer::die(const Response& /*response*/, const Sender& /*sender*/) const {
    log.note("it dies");
    throw PeerDeath();
}

}  // namespace Boardsim
