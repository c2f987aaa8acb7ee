#include "MmiPeer.hpp"

#include <array>
#include <chrono>
#include <thread>

#include "FaultActs.hpp"
#include "MmiReply.hpp"

namespace {

/// One byte more than a datagram of the MMI service has at most.
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

struct MmiPeer::Acts {
    static constexpr std::array rows{
        FaultAct<Act>{{}, &MmiPeer::replyRight},
        FaultAct<Act>{{"silent", "no reply"}, &MmiPeer::replyNothing},
        FaultAct<Act>{{"slow", "MS milliseconds pass before each datagram", "MS", 0, longestDelayMs},
                      &MmiPeer::replySlowly},
        FaultAct<Act>{{"dying", "it dies after the first datagram"}, &MmiPeer::dieAfterFirst},
        FaultAct<Act>{{"unended", "datagrams of 513 bytes, no end marker"}, &MmiPeer::replyUnended},
        FaultAct<Act>{{"endless", "datagrams for as long as somebody listens"}, &MmiPeer::replyEndlessly},
        FaultAct<Act>{{"binary", "every byte from 0x01 to 0xff, and empty lines"}, &MmiPeer::replyBinary},
        FaultAct<Act>{{"joined", "text and end marker come in one datagram"}, &MmiPeer::replyJoined},
        FaultAct<Act>{{"empty", "the first datagram, then an empty one, then nothing"},
                      &MmiPeer::replyEmptyAfterFirst},
        FaultAct<Act>{{"stale", "a line left over from an earlier command comes first"},
                      &MmiPeer::replyStaleFirst},
    };
};

MmiPeer::MmiPeer(const std::string& instanceName, std::uint16_t port, Fault misbehaviour)
    : instance(instanceName),
      statistics(instanceName),
      fault(std::move(misbehaviour)),
      act(findAct<Act>(Acts::rows, fault)),
      socket(DatagramSocket::atLocalPort(port)),
      record(instanceName + "_dispatcher") {
}

std::vector<FaultKind> MmiPeer::faultKinds() {
    return kindsOf<Act>(Acts::rows);
}

void MmiPeer::serve() {
    const Datagram request = socket.receive();
    record.addDatagram(request.bytes);
    (this->*act)(answerTo(request.bytes), request.sender);
}

MmiPeer::Texts MmiPeer::answerTo(const std::string& command) const {
    return command == QosStatistics::resetRequest ? statistics.reset()
                                                  : mmiDatagrams(mmiReplyText(instance, command));
}

void MmiPeer::sendAll(const Texts& texts, const Sender& sender) const {
    for (const std::string& text : texts) {
        socket.send(text, sender);
    }
}

void MmiPeer::replyRight(const Texts& texts, const Sender& sender) const {
    sendAll(texts, sender);
    socket.send(mmiEndOfMessage, sender);
}

void MmiPeer::replyNothing(const Texts& /*texts*/, const Sender& /*sender*/) const {
}

void MmiPeer::replySlowly(const Texts& texts, const Sender& sender) const {
    Texts datagrams = texts;
    datagrams.emplace_back(mmiEndOfMessage);
    for (const std::string& datagram : datagrams) {
        std::this_thread::sleep_for(std::chrono::milliseconds(fault.number));
        socket.send(datagram, sender);
    }
}

void MmiPeer::dieAfterFirst(const Texts& texts, const Sender& sender) const {
    socket.send(texts.front(), sender);
    throw PeerDeath();
}

void MmiPeer::replyUnended(const Texts& texts, const Sender& sender) const {
    std::string text;
    for (const std::string& piece : texts) {
        text += piece;
    }
    for (std::size_t start = 0; start < text.size(); start += unusualSize) {
        std::string datagram = text.substr(start, unusualSize);
        datagram.resize(unusualSize, '.');
        socket.send(datagram, sender);
    }
}

void MmiPeer::replyEndlessly(const Texts& texts, const Sender& sender) const {
    const std::string& datagram = texts.front();
    socket.connect(sender);  // so that the end comes when nobody listens any more
    while (socket.send(datagram, sender)) {
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    socket.disconnect();
}

void MmiPeer::replyBinary(const Texts& /*texts*/, const Sender& sender) const {
    sendAll({everyByte(), "\n\n", everyByte() + "\n", std::string(mmiEndOfMessage)}, sender);
}

void MmiPeer::replyJoined(const Texts& texts, const Sender& sender) const {
    socket.send(texts.front() + std::string(mmiEndOfMessage), sender);
}

void MmiPeer::replyEmptyAfterFirst(const Texts& texts, const Sender& sender) const {
    sendAll({texts.front(), ""}, sender);
}

void MmiPeer::replyStaleFirst(const Texts& texts, const Sender& sender) const {
    socket.send("left over from an earlier command\n", sender);
    replyRight(texts, sender);
}
