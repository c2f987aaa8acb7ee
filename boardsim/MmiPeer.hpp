#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DatagramSocket.hpp"
#include "Fault.hpp"
#include "Peer.hpp"
#include "QosStatistics.hpp"
#include "RequestRecord.hpp"

/// The MMI service of a dispatcher: takes a command as one UDP datagram and answers with text in several,
/// then with the end marker in one of its own. It resets the instance's QoS statistics, too.
class MmiPeer : public Peer {
public:
    /// `instanceName` is "iwf" or "sfn"; the port is one of 127.0.0.1. Requests are recorded under the
    /// dispatcher's name.
    MmiPeer(const std::string& instanceName, std::uint16_t port, Fault misbehaviour = {});

    /// The faults that the constructor takes.
    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    struct Acts;
    using Texts = std::vector<std::string>;  // a datagram each, without the end marker
    using Act = void (MmiPeer::*)(const Texts& texts, const Sender& sender) const;

    Texts answerTo(const std::string& command) const;
    void sendAll(const Texts& texts, const Sender& sender) const;

    void replyRight(const Texts& texts, const Sender& sender) const;
    void replyNothing(const Texts& texts, const Sender& sender) const;
    void replySlowly(const Texts& texts, const Sender& sender) const;
    void dieAfterFirst(const Texts& texts, const Sender& sender) const;
    void replyUnended(const Texts& texts, const Sender& sender) const;
    void replyEndlessly(const Texts& texts, const Sender& sender) const;
    void replyBinary(const Texts& texts, const Sender& sender) const;
    void replyJoined(const Texts& texts, const Sender& sender) const;
    void replyEmptyAfterFirst(const Texts& texts, const Sender& sender) const;
    void replyStaleFirst(const Texts& texts, const Sender& sender) const;

    std::string instance;
    QosStatistics statistics;
    Fault fault;
    Act act;
    DatagramSocket socket;
    RequestRecord record;
};
