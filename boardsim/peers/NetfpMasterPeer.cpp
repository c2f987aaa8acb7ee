#include "NetfpMasterPeer.hpp"

#include <array>
#include <cstring>
#include <string_view>

#include "FaultHandlers.hpp"
#include "MessageText.hpp"

namespace Boardsim {
namespace {

// Faults of the processing, not of the answer.
constexpr const char* refusesRename = "refuse-rename";
constexpr const char* ignoresRenames = "ignore-renames";

std::string_view bytesOf(const NetfpMaster_Response& response) {
    return {reinterpret_cast<const char*>(&response), sizeof response};
}

}  // namespace

struct NetfpMasterPeer::Handlers {
    static constexpr std::array rows{
        FaultHandler<Handler>{{}, &NetfpMasterPeer::sendCorrect},
        FaultHandler<Handler>{{"silent", "sends no answer"}, &NetfpMasterPeer::sendNothing},
        FaultHandler<Handler>{{"slow", "answers MS milliseconds late", "MS", 0, longestDelayMs},
                              &NetfpMasterPeer::sendLate},
        FaultHandler<Handler>{{"error", "answers with this error code", "CODE", INT32_MIN, INT32_MAX},
                              &NetfpMasterPeer::sendError},
        FaultHandler<Handler>{{"stale", "first sends an answer to an earlier request"},
                              &NetfpMasterPeer::sendStaleFirst},
        FaultHandler<Handler>{{"truncated", "sends only the first BYTES of the answer", "BYTES", 0,
                               sizeof(NetfpMaster_Response)},
                              &NetfpMasterPeer::sendTruncated},
        FaultHandler<Handler>{{"oversized", "sends 400 bytes instead of 272"},
                              &NetfpMasterPeer::sendOversized},
        FaultHandler<Handler>{{"dying", "dies at the first request"}, &NetfpMasterPeer::die},
        FaultHandler<Handler>{
            {refusesRename, "refuses the Nth rename since the board started", "N", 1, INT32_MAX},
            &NetfpMasterPeer::sendCorrect},
        FaultHandler<Handler>{{ignoresRenames, "answers renames with success, but renames nothing"},
                              &NetfpMasterPeer::sendCorrect},
    };
};

NetfpMasterPeer::NetfpMasterPeer(std::shared_ptr<InterfaceTable> interfaces, Fault misbehaviour,
                                 const std::string& path)
    : table(std::move(interfaces)),
      fault(std::move(misbehaviour)),
      handler(findHandler<Handler>(Handlers::rows, fault)),
      socket(ServerSocket::atPath(path)),
      log("netfp_master", fault) {
}

std::vector<FaultKind> NetfpMasterPeer::faultKinds() {
    return kindsOf<Handler>(Handlers::rows);
}

void NetfpMasterPeer::serve() {
    const Datagram request = socket.receive();
    record.addDatagram(request.bytes);
    log.received(masterRequestText(request.bytes), request.bytes.size());
    (this->*handler)(answerTo(request.bytes), request.sender);
}

NetfpMaster_Response NetfpMasterPeer::answerTo(const std::string& bytes) {
    NetfpMaster_Request request{};
    std::memcpy(&request, bytes.data(), std::min(bytes.size(), sizeof request));
    NetfpMaster_Response response{};
    std::memcpy(response.head, "response", sizeof response.head);
    response.requestId = request.requestId;
    if (bytes.size() != sizeof request) {
        response.errorCode = wrongSize;
        return response;
    }
    switch (request.type) {
        case NETFP_MASTER_GET_SWITCH_PORT:
            answerGetSwitchPort(request, response);
            break;
        case NETFP_MASTER_SET_PORT_MIRRORING:
            answerSetPortMirroring(request, response);
            break;
        case NETFP_MASTER_RENAME_INTERFACE:
            answerRenameInterface(request, response);
            break;
        case NETFP_MASTER_ADD_MULTICAST_MAC:
            answerAddMulticastMac(request, response);
            break;
        default:
            response.errorCode = unknownMessage;
    }
    return response;
}

void NetfpMasterPeer::answerGetSwitchPort(const NetfpMaster_Request& request,
                                          NetfpMaster_Response& response) {
    const auto port = table->portOf(fieldText(request.body.getSwitchPort.interfaceName));
    response.errorCode = port ? 0 : unknownInterface;
    response.switchPort = port.value_or(0);
}

void NetfpMasterPeer::answerSetPortMirroring(const NetfpMaster_Request& request,
                                             NetfpMaster_Response& response) {
    response.errorCode = table->setMirroring(request.body.setPortMirroring) ? 0 : refusedMirroring;
}

void NetfpMasterPeer::answerRenameInterface(const NetfpMaster_Request& request,
                                            NetfpMaster_Response& response) {
    const auto& [currentName, newName] = request.body.renameInterface;
    ++renames;
    const bool refused = fault.kind == refusesRename && renames == fault.number;
    const bool ignored = fault.kind == ignoresRenames;
    const bool done = !refused && (ignored || table->rename(fieldText(currentName), fieldText(newName)));
    response.errorCode = done ? 0 : refusedRename;
}

void NetfpMasterPeer::answerAddMulticastMac(const NetfpMaster_Request& request,
                                            NetfpMaster_Response& response) {
    response.errorCode = table->addMulticast(request.body.addMulticastMac) ? 0 : refusedMulticast;
}

void NetfpMasterPeer::send(std::string_view bytes, const Sender& sender) const {
    // First, because a client with the answer must find it in the log.
    log.answered(masterResponseText(bytes), bytes.size());
    if (!socket.send(bytes, sender)) {
        log.note(answerNotTaken);
    }
}

void NetfpMasterPeer::sendCorrect(const NetfpMaster_Response& response, const Sender& sender) const {
    send(bytesOf(response), sender);
}

void NetfpMasterPeer::sendNothing(const NetfpMaster_Response& /*response*/, const Sender& /*sender*/) const {
    log.note("no answer");
}

void NetfpMasterPeer::sendLate(const NetfpMaster_Response& response, const Sender& sender) const {
    delayAnswer(fault);
    sendCorrect(response, sender);
}

void NetfpMasterPeer::sendError(const NetfpMaster_Response& response, const Sender& sender) const {
    NetfpMaster_Response refusal = response;
    refusal.errorCode = fault.number;
    sendCorrect(refusal, sender);
}

void NetfpMasterPeer::sendStaleFirst(const NetfpMaster_Response& response, const Sender& sender) const {
    NetfpMaster_Response stale = response;
    --stale.requestId;
    sendCorrect(stale, sender);
    sendCorrect(response, sender);
}

void NetfpMasterPeer::sendTruncated(const NetfpMaster_Response& response, const Sender& sender) const {
    send(bytesOf(response).substr(0, static_cast<std::size_t>(fault.number)), sender);
}

void NetfpMasterPeer::sendOversized(const NetfpMaster_Response& response, const Sender& sender) const {
    std::string bytes(bytesOf(response));
    bytes.resize(oversizedAnswer, '\xa5');
    send(bytes, sender);
}

void NetfpMasterPeer::die(const NetfpMaster_Response& /*response*/, const Sender& /*sender*/) const {
    log.note("it dies");
    throw PeerDeath();
}

}  // namespace Boardsim
