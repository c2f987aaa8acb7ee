#include "ResetQoSStatsAction.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <span>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "ElapsedTime.hpp"
#include "SocketAddress.hpp"

namespace Korvel {
namespace {

using std::chrono::milliseconds;

constexpr std::uint16_t localPort = 4141;
constexpr std::size_t replySize = 56;
constexpr milliseconds replyTimeout{1500};
constexpr milliseconds replyLimit{7500};

/// Appends "ERRNO REASON" to the message. Call it immediately after the failed system call.
bool failNumberAndReason(const char* message) {
    const int reason = errno;
    return fail(message, reason, " ", std::strerror(reason));
}

sockaddr_in internetAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    return address;
}

}  // namespace

ResetQoSStatsAction::~ResetQoSStatsAction() {
    if (!socketFd.close()) {
        fail("ResetQosStats: Socket closing failed");
    }
}

std::string ResetQoSStatsAction::getKeyword() {
    return keyword;
}

bool ResetQoSStatsAction::run(int argc, char** /*argv*/) {
    if (argc != 2) {
        return fail("ResetQosStats: Wrong number of parameters");
    }
    if (!initialize()) {
        return false;
    }
    for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
         ++instance) {
        sendCleanStatsReq(Configuration::getConfig(*instance));
        if (!waitForResp(*instance)) {
            return false;
        }
    }
    return true;
}

bool ResetQoSStatsAction::initialize() {
    socketFd = openDatagramSocket(AF_INET);
    if (!socketFd) {
        return failNumberAndReason("Error while creating  socket, errno:");
    }
    const sockaddr_in address = internetAddress(localPort);  // INADDR_ANY is zero
    if (::bind(socketFd.get(), Base::genericAddress(address), sizeof address) != 0) {
        return failNumberAndReason("Error while binding  socket, errno:");
    }
    return true;
}

int ResetQoSStatsAction::sendCleanStatsReq(const Configuration::Config& config) {
    sockaddr_in address = internetAddress(config.dispatcherPort);
    if (::inet_pton(AF_INET, config.dispatcherAddress.c_str(), &address.sin_addr) != 1) {
        fail("inet_pton error for address: ", config.dispatcherAddress);
        return -1;
    }
    if (!sendDatagram(socketFd.get(), std::as_bytes(std::span(keyword)), Base::genericAddress(address),
                      sizeof address)) {
        failNumberAndReason("Error while sending QoS stats reset request to dispatcher, errno:");
        return -1;
    }
    return 0;
}

bool ResetQoSStatsAction::waitForResp(const Configuration::DispatcherInstance& instance) {
    const std::string& expected = Configuration::getConfig(instance).endOfMessageMarker;
    bool received = false;
    bool expired = false;
    const ElapsedTime time;
    while (!expired) {
        std::string text;
        const bool arrived = receiveText(text);
        expired = time.exceeds(replyLimit);
        if (!arrived || text == expected) {
            break;
        }
        print(text, '\n');
        received = true;
    }
    return received;
}

/// Receives the next datagram as text, truncated to the reply size. Reports and returns false if none
/// arrives.
bool ResetQoSStatsAction::receiveText(std::string& text) {
    std::array<char, replySize> buffer{};
    std::size_t size = 0;
    const auto room = std::as_writable_bytes(std::span(buffer));
    switch (receiveDatagram(socketFd.get(), room, deadlineIn(replyTimeout), size)) {
        case Arrival::timedOut:
            return fail("poll(): Timed out while waiting for response");
        case Arrival::waitFailed:
            return failErrno("poll(): An error occured, errno: %s");
        case Arrival::receiveFailed:
            return failErrno("recv(): An error occured, errno: %s");
        case Arrival::datagram:
            break;
    }
    if (size == 0) {
        return fail("recv(): Peer has performed an orderly shutdown");
    }
    text.assign(buffer.data(), ::strnlen(buffer.data(), buffer.size()));
    return true;
}

void ResetQoSStatsAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, "\n");
    print(indent, "Examples:\n");
    print(indent, programName, " -d iwf ", keyword, "\n");
}

}  // namespace Korvel
