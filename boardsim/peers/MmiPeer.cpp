#include "MmiPeer.hpp"

#include <array>
#include <chrono>
#include <thread>
#include <utility>

#include "FaultHandlers.hpp"
#include "MmiReply.hpp"

namespace Boardsim {
namespace {

/// One byte more than the longest correct datagram.
constexpr std::size_t unusualSize = 513;

std::string everyByte() {
    constexpr int last = 0xff;
    std::string bytes;
    for (int byte = 1; byte <= last; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

}  // namespace

struct MmiPeer::Handlers {
    static constexpr std::array rows{
        FaultHandler<Handler>{{}, &MmiPeer::replyCorrectly},
        FaultHandler<Handler>{{"silent", "sends no reply"}, &MmiPeer::replyNothing},
        FaultHandler<Handler>{{"slow", "waits MS milliseconds before each datagram", "MS", 0, longestDelayMs},
                              &MmiPeer::replySlowly},
        FaultHandler<Handler>{{"dying", "dies after the first datagram"}, &MmiPeer::dieAfterFirst},
        FaultHandler<Handler>{{"unended", "sends datagrams of 513 bytes, but no end marker"},
                              &MmiPeer::replyUnended},
        FaultHandler<Handler>{{"endless", "sends datagrams until nobody listens"}, &MmiPeer::replyEndlessly},
        FaultHandler<Handler>{{"binary", "replies with every byte from 0x01 to 0xff, and with empty lines"},
                              &MmiPeer::replyBinary},
        FaultHandler<Handler>{{"joined", "sends text and end marker in one datagram"}, &MmiPeer::replyJoined},
        FaultHandler<Handler>{{"empty", "sends the first datagram, an empty one, then nothing"},
                              &MmiPeer::replyEmptyAfterFirst},
        FaultHandler<Handler>{{"stale", "first sends a line left over from an earlier command"},
                              &MmiPeer::replyStaleFirst},
    };
};

MmiPeer::MmiPeer(const std::string& instanceName, std::uint16_t port,
                 std::shared_ptr<LiveTraffic> boardTraffic, std::shared_ptr<QosStatistics> qosStatistics,
                 Fault misbehaviour)
    : instance(instanceName),
      traffic(std::move(boardTraffic)),
      statistics(std::move(qosStatistics)),
      fault(std::move(misbehaviour)),
      handler(findHandler<Handler>(Handlers::rows, fault)),
      socket(ServerSocket::atLocalPort(port)),
      record(instanceName + "_dispatcher"),
      log(instanceName + "_dispatcher", fault) {
}

std::vector<FaultKind> MmiPeer::faultKinds() {
    return kindsOf<Handler>(Handlers::rows);
}

void MmiPeer::serve() {
    const Datagram request = socket.receive();
    record.addDatagram(request.bytes);
    log.received(request.bytes, request.bytes.size());
    sent = {};
    (this->*handler)(answerTo(request.bytes), request.sender);
    logReply();
}

MmiPeer::Texts MmiPeer::answerTo(const std::string& command) {
    return command == QosStatistics::resetRequest
               ? statistics->reset()
               : mmiDatagrams(mmiReplyText(instance, command, traffic->dispatcher(instance)));
}

/// One line for all datagrams: an endless reply must not fill the log.
void MmiPeer::logReply() const {
    if (sent.datagrams == 0) {
        log.note("no reply");
    } else {
        const std::string plural = sent.datagrams == 1 ? "" : "s";
        log.answered("reply of " + std::to_string(sent.datagrams) + " datagram" + plural, sent.bytes);
    }
}

bool MmiPeer::send(std::string_view datagram, const Sender& sender) {
    const bool taken = socket.send(datagram, sender);
    if (taken) {
        ++sent.datagrams;
        sent.bytes += datagram.size();
    }
    return taken;
}

void MmiPeer::sendAll(const Texts& texts, const Sender& sender) {
    for (const std::string& text : texts) {
        send(text, sender);
    }
}

void MmiPeer::replyCorrectly(const Texts& texts, const Sender& sender) {
    sendAll(texts, sender);
    send(mmiEndOfMessage, sender);
}

void MmiPeer::replyNothing(const Texts& /*texts*/, const Sender& /*sender*/) {
}

void MmiPeer::replySlowly(const Texts& texts, const Sender& sender) {
    Texts datagrams = texts;
    datagrams.emplace_back(mmiEndOfMessage);
    for (const std::string& datagram : datagrams) {
        delayAnswer(fault);
        send(datagram, sender);
    }
}

void MmiPeer::dieAfterFirst(const Texts& texts, const Sender& sender) {
    send(texts.front(), sender);
    logReply();
    log.note("it dies");
    throw PeerDeath();
}

void MmiPeer::replyUnended(const Texts& texts, const Sender& sender) {
    std::string text;
    for (const std::string& piece : texts) {
        text += piece;
    }
    for (std::size_t start = 0; start < text.size(); start += unusualSize) {
        std::string datagram = text.substr(start, unusualSize);
        datagram.resize(unusualSize, '.');
        send(datagram, sender);
    }
}

void MmiPeer::replyEndlessly(const Texts& texts, const Sender& sender) {
    const std::string& datagram = texts.front();
    socket.connect(sender);  // so that send() fails when the client has closed its socket
    while (send(datagram, sender)) {
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    socket.disconnect();
}

void MmiPeer::replyBinary(const Texts& /*texts*/, const Sender& sender) {
    sendAll({everyByte(), "\n\n", everyByte() + "\n", std::string(mmiEndOfMessage)}, sender);
}

void MmiPeer::replyJoined(const Texts& texts, const Sender& sender) {
    send(texts.front() + std::string(mmiEndOfMessage), sender);
}

void MmiPeer::replyEmptyAfterFirst(const Texts& texts, const Sender& sender) {
    sendAll({texts.front(), ""}, sender);
}

void MmiPeer::replyStaleFirst(const Texts& texts, const Sender& sender) {
    send("left over from an earlier command\n", sender);
    replyCorrectly(texts, sender);
}

}  // namespace Boardsim
