#include "MmiChannel.hpp"

#include <cstring>
#include <span>

#include <arpa/inet.h>

#include "BoundedText.hpp"
#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "SocketAddress.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::milliseconds datagramTimeout{500};
constexpr std::chrono::seconds replyTimeLimit{60};

}  // namespace

MmiChannel::MmiChannel(const Configuration::Config& config) : settings(config) {
}

bool MmiChannel::open() {
    socket = openDatagramSocket(AF_INET);
    if (!socket) {
        return failErrno("Error while opening socket, errno: ");
    }
    if (!setDestination() || !bindLocalPort()) {
        socket.reset();
        return false;
    }
    receiveBuffer.assign(settings.receiveBufferSize, '\0');
    return true;
}

bool MmiChannel::setDestination() {
    destination.sin_family = AF_INET;
    destination.sin_port = htons(settings.dispatcherPort);
    return ::inet_pton(AF_INET, settings.dispatcherAddress.c_str(), &destination.sin_addr) == 1 ||
           fail("inet_pton error for address: ", settings.dispatcherAddress);
}

bool MmiChannel::bindLocalPort() {
    const int enabled = 1;
    if (::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &enabled, sizeof enabled) != 0) {
        return failErrno("setsockopt SO_REUSEADDR error: ");
    }
    progress("Binding to port: ", settings.localPort);
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_port = htons(settings.localPort);
    local.sin_addr.s_addr = htonl(INADDR_ANY);
    return ::bind(socket.get(), Base::genericAddress(local), sizeof local) == 0 ||
           failErrno("Error while binding socket, errno: ");
}

void MmiChannel::close() {
    if (!socket.close()) {
        failErrno("Error while closing socket, errno: ");
    }
}

bool MmiChannel::query(const std::string& command, std::string& reply, std::size_t sizeLimit) {
    progress("Sending MMI request: ", command);
    if (!send(command)) {
        return false;
    }
    const Deadline deadline = deadlineIn(replyTimeLimit);
    std::string chunk;
    while (receiveChunk(chunk)) {
        if (chunk == settings.endOfMessageMarker) {
            progress("Response received successfully");
            break;
        }
        if (!appendWithin(sizeLimit, reply, chunk) || hasPassed(deadline)) {
            fail("Reply to ", command, " does not end, cut");
            break;
        }
    }
    return true;
}

bool MmiChannel::send(const std::string& command) {
    return sendDatagram(socket.get(), std::as_bytes(std::span(command)), Base::genericAddress(destination),
                        sizeof destination) ||
           failErrno("Sending command ", command, " to MmiSvc failed, errno: ");
}

bool MmiChannel::receiveChunk(std::string& chunk) {
    const auto room = std::as_writable_bytes(std::span(receiveBuffer));
    std::size_t size = 0;
    switch (receiveDatagram(socket.get(), room, deadlineIn(datagramTimeout), size)) {
        case Arrival::timedOut:
            return fail("poll(): Timed out while waiting for response");
        case Arrival::waitFailed:
            return failErrno("poll(): An error occured, errno: ");
        case Arrival::receiveFailed:
            return failErrno("recv(): An error occured, errno: ");
        case Arrival::datagram:
            break;
    }
    if (size == 0) {
        return fail("recv(): Peer has performed an orderly shutdown");
    }
    chunk.assign(receiveBuffer.data(), ::strnlen(receiveBuffer.data(), size));
    return true;
}

}  // namespace Korvel
