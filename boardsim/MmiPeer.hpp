#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DatagramSocket.hpp"
#include "Fault.hpp"
#include "Peer.hpp"
#include "RequestRecord.hpp"

/// The MMI service of a dispatcher: takes a command as one UDP datagram and answers with text in several,
/// then with the end marker in one of its own.
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
    using Act = void (MmiPeer::*)(const std::string& text, const Sender& sender) const;

    void sendAll(const std::vector<std::string>& datagrams, const Sender& sender) const;

    void replyRight(const std::string& text, const Sender& sender) const;
    void replyNothing(const std::string& text, const Sender& sender) const;
    void replySlowly(const std::string& text, const Sender& sender) const;
    void dieAfterFirst(const std::string& text, const Sender& sender) const;
    void replyUnended(const std::string& text, const Sender& sender) const;
    void replyEndlessly(const std::string& text, const Sender& sender) const;
    void replyBinary(const std::string& text, const Sender& sender) const;
    void replyJoined(const std::string& text, const Sender& sender) const;
    void replyEmptyAfterFirst(const std::string& text, const Sender& sender) const;
    void replyStaleFirst(const std::string& text, const Sender& sender) const;

    std::string instance;
    Fault fault;
    Act act;
    DatagramSocket socket;
    RequestRecord record;
};
