#include "MasterActionFixture.hpp"

#include "NetFPMasterCom.hpp"
#include "NetFPMasterSocket.hpp"
#include "NetfpMasterWire.hpp"

using Korvel::NetFPMasterCom;

namespace {

constexpr const char* deafPath = "/tmp/deaf";
constexpr unsigned masterTimeout = 10;  // in units of 100 ms

}  // namespace

void MasterActionFixture::TearDown() {
    NetFPMasterCom::setTimeout(masterTimeout);
    NetFPMasterCom::setMasterSocketPath("/tmp/NetfpMaster");
    NetFPMasterCom::setClientSocketPath("/tmp/Korvel");
    PortActionFixture::TearDown();
}

void MasterActionFixture::givenSilence() {
    NetFPMasterCom::setTimeout(1);
}

void MasterActionFixture::givenNoMaster() {
    NetFPMasterCom::setMasterSocketPath("/tmp/nobody");
}

void MasterActionFixture::givenDeafMaster() {
    givenSilence();
    deaf.reset(Korvel::connectAndBindToLinuxSocket(deafPath));
    NetFPMasterCom::setMasterSocketPath(deafPath);
}

void MasterActionFixture::givenFullMaster() {
    givenDeafMaster();
    printedBy([] {
        NetFPMasterCom sender;
        NetfpMaster_Request request{};
        bool room = sender.connect();
        while (room) {
            room = sender.sendNetFPRequest(&request);
        }
    });
}

void MasterActionFixture::givenNoClientSocket() {
    NetFPMasterCom::setClientSocketPath("/tmp/missing/Korvel");
}

std::string MasterActionFixture::received(const std::string& request) {
    return "Received response ID: " + std::to_string(idOfRequest(request)) + ", Error Code: 0\n";
}

std::vector<std::string> MasterActionFixture::requestsWithoutIdentifiers(std::size_t count) const {
    std::vector<std::string> all = master.awaitRequests(count);
    for (std::string& request : all) {
        request.replace(4, 4, 4, '\0');
    }
    return all;
}
