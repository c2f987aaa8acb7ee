#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "Peer.hpp"
#include "PeerLog.hpp"
#include "RequestRecord.hpp"
#include "ServerSocket.hpp"

namespace Boardsim {

/// A netlink port of the fast-path stack. Answers each known request with a message type and a status.
/// Ignores a datagram if its size, its message type or its netlink header is wrong.
class NetlinkPeer : public Peer {
public:
    struct Service {
        std::uint32_t requestType;
        std::size_t requestSize;  ///< size of the payload, including the message type
        std::uint32_t responseType;
        /// The status for the answer. `payload` has requestSize bytes.
        std::function<std::uint32_t(std::string_view payload)> status;
        /// A short description of the request, for the log.
        std::string (*text)(std::string_view payload);
    };

    NetlinkPeer(std::string_view processName, std::uint32_t ownPortId, std::vector<Service> offered,
                Fault misbehaviour = {});

    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    struct Handlers;
    struct Response;
    using Handler = void (NetlinkPeer::*)(const Response&, const Sender&) const;

    const Service* findService(const Datagram& request) const;
    Response answerTo(const Datagram& request, const Service& service) const;

    void send(const Response& response, std::string_view bytes, const Sender& sender) const;
    void sendCorrect(const Response& response, const Sender& sender) const;
    void sendNothing(const Response& response, const Sender& sender) const;
    void sendLate(const Response& response, const Sender& sender) const;
    void sendError(const Response& response, const Sender& sender) const;
    void sendStaleFirst(const Response& response, const Sender& sender) const;
    void sendWrongSequence(const Response& response, const Sender& sender) const;
    void sendWrongType(const Response& response, const Sender& sender) const;
    void sendWrongPort(const Response& response, const Sender& sender) const;
    void sendTruncated(const Response& response, const Sender& sender) const;
    void sendOversized(const Response& response, const Sender& sender) const;
    void die(const Response& response, const Sender& sender) const;

    std::uint32_t portId;
    std::vector<Service> services;
    Fault fault;
    Handler handler;
    ServerSocket socket;
    RequestRecord record;
    PeerLog log;
};

}  // namespace Boardsim
