#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Fault.hpp"
#include "LiveTraffic.hpp"
#include "Peer.hpp"
#include "PeerLog.hpp"
#include "QosStatistics.hpp"
#include "RequestRecord.hpp"
#include "ServerSocket.hpp"

namespace Boardsim {

/// The MMI service of a dispatcher. A command is one UDP datagram. The reply is several datagrams of text,
/// then one with the end marker. One command resets the QoS statistics of the instance.
class MmiPeer : public Peer {
public:
    /// `instanceName` is "iwf" or "sfn"; `port` is a UDP port of 127.0.0.1. Requests are recorded under the
    /// dispatcher's name.
    MmiPeer(const std::string& instanceName, std::uint16_t port, std::shared_ptr<LiveTraffic> boardTraffic,
            std::shared_ptr<QosStatistics> qosStatistics, Fault misbehaviour = {});

    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    struct Handlers;
    using Texts = std::vector<std::string>;  // one per datagram, without the end marker
    using Handler = void (MmiPeer::*)(const Texts& texts, const Sender& sender);

    Texts answerTo(const std::string& command);
    void logReply() const;
    bool send(std::string_view datagram, const Sender& sender);
    void sendAll(const Texts& texts, const Sender& sender);

    void replyCorrectly(const Texts& texts, const Sender& sender);
    void replyNothing(const Texts& texts, const Sender& sender);
    void replySlowly(const Texts& texts, const Sender& sender);
    void dieAfterFirst(const Texts& texts, const Sender& sender);
    void replyUnended(const Texts& texts, const Sender& sender);
    void replyEndlessly(const Texts& texts, const Sender& sender);
    void replyBinary(const Texts& texts, const Sender& sender);
    void replyJoined(const Texts& texts, const Sender& sender);
    void replyEmptyAfterFirst(const Texts& texts, const Sender& sender);
    void replyStaleFirst(const Texts& texts, const Sender& sender);

    /// The part of the current reply that has been sent.
    struct Sent {
        std::size_t datagrams = 0;
        std::size_t bytes = 0;
    };

    std::string instance;
    std::shared_ptr<LiveTraffic> traffic;
    std::shared_ptr<QosStatistics> statistics;
    Fault fault;
    Handler handler;
    ServerSocket socket;
    RequestRecord record;
    PeerLog log;
    Sent sent;
};

}  // namespace Boardsim
