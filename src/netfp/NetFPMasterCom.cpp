#include "NetFPMasterCom.hpp"

#include <algorithm>
#include <cstdlib>

#include "Console.hpp"
#include "DatagramSocket.hpp"
#include "ResponseReceiver.hpp"
#include "UnixAddress.hpp"

namespace Korvel {
namespace {

/// Minimum size of a response: its request identifier and error code, in bytes.
constexpr std::size_t responseHeaderSize = offsetof(NetfpMaster_Response, switchPort);

/// Minimum size of a response with a switch port, in bytes.
constexpr std::size_t switchPortResponseSize = offsetof(NetfpMaster_Response, rest);

}  // namespace

std::string NetFPMasterCom::_masterSocketPath = "/tmp/NetfpMaster";
std::string NetFPMasterCom::_clientSocketPath = "/tmp/Korvel";
std::uint32_t NetFPMasterCom::_requestTimeoutX100 = 10;
std::int32_t NetFPMasterCom::_getIfResponsePortNumber = 0;

// The identifier distinguishes responses; it need not be unpredictable.
// NOLINTNEXTLINE(cert-msc30-c,cert-msc50-cpp)
NetFPMasterCom::NetFPMasterCom() : requestId(static_cast<std::uint32_t>(std::rand())) {
}

NetFPMasterCom::~NetFPMasterCom() {
    if (isConnected()) {
        close();
    }
}

bool NetFPMasterCom::connect() {
    if (isConnected()) {
        progress("Client Socket already connected");
        return true;
    }
    progress("Creating Socket for Client");
    socketFd = openDatagramSocket(AF_UNIX);
    if (!socketFd) {
        return failErrnoNumber("Client Socket Creation Failed: ");
    }
    ::unlink(_clientSocketPath.c_str());
    progress("Binding to Client Socket \"", _clientSocketPath, "\"");
    if (!bindToPath(socketFd.get(), _clientSocketPath)) {
        failErrnoNumber("Failed to Bind to Client Socket: ");
        socketFd.reset();
        return false;
    }
    return true;
}

bool NetFPMasterCom::close() {
    if (!isConnected()) {
        fail("Client Socket not connected");
        socketFd.reset();
        return true;
    }
    if (!socketFd.close()) {
        return failErrnoNumber("Client Socket Close Failed: ");
    }
    progress("Client Socket closed");
    return true;
}

bool NetFPMasterCom::sendNetFPRequest(NetfpMaster_Request* request) {
    if (request != nullptr) {
        request->requestId = requestId;
    }
    return sendToPath(socketFd.get(), _masterSocketPath, request, sizeof *request) ||
           failErrnoNumber("Failed to Send to Master Socket \"", _masterSocketPath, "\": ");
}

bool NetFPMasterCom::receiveNetFpResponse(ResponseCallback callback) {
    const std::size_t minimumSuccessSize =
        callback == getSwitchPortForInterfaceCallback ? switchPortResponseSize : responseHeaderSize;
    const auto answersRequest = [&](const NetfpMaster_Response& datagram, std::size_t size) {
        return size >= (datagram.errorCode == 0 ? minimumSuccessSize : responseHeaderSize) &&
               matches(datagram);
    };
    NetfpMaster_Response response{};
    switch (receiveResponse(socketFd.get(), deadlineInX100(_requestTimeoutX100), answersRequest, response)) {
        case ResponseResult::timedOut:
            ++requestId;
            return false;
        case ResponseResult::failed:
            return false;
        case ResponseResult::received:
            break;
    }
    if (response.errorCode != 0 || (callback != nullptr && !callback(&response))) {
        return fail("Response from Server was not successful.");
    }
    return true;
}

bool NetFPMasterCom::matches(const NetfpMaster_Response& response) const {
    progress("Received response ID: ", response.requestId, ", Error Code: ", response.errorCode);
    if (response.requestId != requestId) {
        progress("Response from Server does not match Request");
        return false;
    }
    return true;
}

int NetFPMasterCom::getSwitchPortForInterface(const std::string& interfaceName) {
    progress("Sending get interface request for \"", interfaceName, "\"");
    NetfpMaster_Request request{};
    request.type = NETFP_MASTER_GET_SWITCH_PORT;
    char* const name = request.body.getSwitchPort.interfaceName;
    interfaceName.copy(name, sizeof request.body.getSwitchPort.interfaceName);
    if (!sendNetFPRequest(&request) || !receiveNetFpResponse(getSwitchPortForInterfaceCallback)) {
        return -1;
    }
    return _getIfResponsePortNumber;
}

bool NetFPMasterCom::setPortMirroring(bool enable, Netfp_Direction direction, int fromPort, int toPort) {
    progress("Sending ", direction == Netfp_Direction_INBOUND ? "Inbound" : "Outbound", " Port Mirroring ",
             enable ? "Enable" : "Disable", " request Message.");
    NetfpMaster_Request request{};
    request.type = NETFP_MASTER_SET_PORT_MIRRORING;
    request.body.setPortMirroring = {.enable = enable ? 1U : 0U,
                                     .direction = direction,
                                     .fromPort = static_cast<std::uint8_t>(fromPort),
                                     .toPort = static_cast<std::uint8_t>(toPort),
                                     .unused = {}};
    return sendNetFPRequest(&request) && receiveNetFpResponse(alwaysTrueCallback);
}

void NetFPMasterCom::setMasterSocketPath(const std::string& path) {
    _masterSocketPath = path;
}

std::string NetFPMasterCom::getMasterSocketPath() {
    return _masterSocketPath;
}

void NetFPMasterCom::setClientSocketPath(const std::string& path) {
    _clientSocketPath = path;
}

std::string NetFPMasterCom::getClientSocketPath() {
    return _clientSocketPath;
}

void NetFPMasterCom::setTimeout(unsigned timeoutX100) {
    _requestTimeoutX100 = timeoutX100;
}

unsigned NetFPMasterCom::getTimeout() {
    return _requestTimeoutX100;
}

bool NetFPMasterCom::alwaysTrueCallback(NetfpMaster_Response* /*response*/) {
    progress("Received Success Response");
    return true;
}

bool NetFPMasterCom::getSwitchPortForInterfaceCallback(NetfpMaster_Response* response) {
    _getIfResponsePortNumber = response->switchPort;
    progress("Receive Success Response.  Port Number: ", _getIfResponsePortNumber);
    return true;
}

}  // namespace Korvel
