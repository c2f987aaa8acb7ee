// Responses of the NetFP master. The first byte says which request is sent how often, the rest is the
// datagrams.

#include <cstring>
#include <string>

#include "FakeKernel.hpp"
#include "FuzzTarget.hpp"
#include "NetFPMasterCom.hpp"
#include "NetFPMasterSocket.hpp"
#include "QuietConsole.hpp"
#include "VerboseMode.hpp"

namespace {

using Fuzz::FakeKernel;
using Fuzz::require;

/// The fields of the datagram that came last. What was not sent is 0.
NetfpMaster_Response lastResponse() {
    NetfpMaster_Response response{};
    const std::string& received = FakeKernel::current().received();
    received.copy(reinterpret_cast<char*>(&response), sizeof response);
    return response;
}

NetfpMaster_Request lastRequest() {
    const std::string& sent = FakeKernel::current().sent();
    require(sent.size() == sizeof(NetfpMaster_Request), "a request has its size");
    NetfpMaster_Request request{};
    std::memcpy(&request, sent.data(), sent.size());
    return request;
}

void askForPort(Korvel::NetFPMasterCom& master) {
    const int port = master.getSwitchPortForInterface("eth0");
    const NetfpMaster_Response response = lastResponse();
    const bool answered = FakeKernel::current().received().size() >= offsetof(NetfpMaster_Response, rest) &&
                          response.requestId == lastRequest().requestId && response.errorCode == 0;
    require(port == -1 || (answered && port == response.switchPort), "a port comes from the response");
}

void mirror(Korvel::NetFPMasterCom& master) {
    const bool done = master.setPortMirroring(true, Netfp_Direction_INBOUND, 1, 2);
    const NetfpMaster_Response response = lastResponse();
    require(!done || (response.errorCode == 0 && response.requestId == lastRequest().requestId),
            "success comes from the response");
}

void receiveOnSocket() {
    constexpr unsigned identifier = 0x30303030;
    const int socket = Korvel::connectAndBindToLinuxSocket("/tmp/Korvel");
    const Base::UniqueFd owner(socket);
    NetfpMaster_Response response{};
    const bool received = Korvel::receiveNetFpResponse(socket, &response, identifier, 10);
    require(!received || response.requestId == identifier, "a response has the identifier");
    const NetfpMaster_Response last = lastResponse();
    require(!received || std::memcmp(&last, &response, sizeof last) == 0, "a response is what was sent");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr unsigned verbose = 4;
    constexpr unsigned requests = 3;
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const auto kind = static_cast<unsigned>(input.number(1));
    const FakeKernel kernel(input);
    const Fuzz::QuietConsole console;
    Korvel::setVerboseMode((kind & verbose) != 0);
    Korvel::NetFPMasterCom master;
    require(master.connect(), "a connection needs nobody else");
    for (unsigned count = 0; count < requests; ++count) {
        if ((kind >> count & 1U) != 0) {
            askForPort(master);
        } else {
            mirror(master);
        }
    }
    receiveOnSocket();
    return 0;
}
