#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "InterfaceTable.hpp"
#include "NetfpMaster.hpp"
#include "Peer.hpp"
#include "PeerLog.hpp"
#include "RequestRecord.hpp"
#include "ServerSocket.hpp"

namespace Boardsim {

/// The NetFP master's request socket: answers each request with one response. Answers with an error code if
/// the datagram has the wrong size or an unknown message type.
class NetfpMasterPeer : public Peer {
public:
    /// Error codes of the responses. 0 is success.
    static constexpr std::int32_t unknownInterface = -1;
    static constexpr std::int32_t unknownMessage = -2;
    static constexpr std::int32_t wrongSize = -3;
    static constexpr std::int32_t refusedMirroring = -4;
    static constexpr std::int32_t refusedRename = -5;
    static constexpr std::int32_t refusedMulticast = -6;

    explicit NetfpMasterPeer(std::shared_ptr<InterfaceTable> interfaces, Fault misbehaviour = {},
                             const std::string& path = "/tmp/NetfpMaster");

    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    struct Handlers;
    using Handler = void (NetfpMasterPeer::*)(const NetfpMaster_Response&, const Sender&) const;

    NetfpMaster_Response answerTo(const std::string& bytes);
    void answerGetSwitchPort(const NetfpMaster_Request& request, NetfpMaster_Response& response);
    void answerSetPortMirroring(const NetfpMaster_Request& request, NetfpMaster_Response& response);
    void answerRenameInterface(const NetfpMaster_Request& request, NetfpMaster_Response& response);
    void answerAddMulticastMac(const NetfpMaster_Request& request, NetfpMaster_Response& response);

    void send(std::string_view bytes, const Sender& sender) const;
    void sendCorrect(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendNothing(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendLate(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendError(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendStaleFirst(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendTruncated(const NetfpMaster_Response& response, const Sender& sender) const;
    void sendOversized(const NetfpMaster_Response& response, const Sender& sender) const;
    void die(const NetfpMaster_Response& response, const Sender& sender) const;

    std::shared_ptr<InterfaceTable> table;
    Fault fault;
    Handler handler;
    ServerSocket socket;
    int renames = 0;  // rename requests so far
    RequestRecord record{"netfp_master"};
    PeerLog log;
};

}  // namespace Boardsim
