#include "NetFPMasterComFixture.hpp"

#include <cstdlib>
#include <thread>

#include "NetfpMasterWire.hpp"
#include "VerboseMode.hpp"

using Korvel::NetFPMasterCom;

namespace {

constexpr unsigned defaultTimeout = 10;  // in units of 100 ms
constexpr unsigned hourInTenths = 36000;

}  // namespace

std::uint32_t NetFPMasterComFixture::nextIdentifier() {
    constexpr unsigned seed = 1;
    std::srand(seed);  // NOLINT(cert-msc32-c,cert-msc51-cpp): to know what comes
    // NOLINTNEXTLINE(cert-msc30-c,cert-msc50-cpp): as the client does
    const auto identifier = static_cast<std::uint32_t>(std::rand());
    std::srand(seed);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
    return identifier;
}

void NetFPMasterComFixture::SetUp() {
    NetFPMasterCom::setTimeout(hourInTenths);
    ASSERT_TRUE(client.connect());
}

void NetFPMasterComFixture::TearDown() {
    Korvel::setVerboseMode(false);
    NetFPMasterCom::setTimeout(defaultTimeout);
    NetFPMasterCom::setMasterSocketPath("/tmp/NetfpMaster");
    NetFPMasterCom::setClientSocketPath("/tmp/Korvel");
}

void NetFPMasterComFixture::masterSends(const std::vector<std::string>& datagrams) {
    master.answers([datagrams](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (const std::string& datagram : datagrams) {
            while (!reply(datagram)) {
                std::this_thread::yield();  // until the client has read
            }
        }
    });
}

void NetFPMasterComFixture::masterResponds(std::int32_t errorCode, std::int32_t switchPort) {
    master.answers([=](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(request), errorCode, switchPort));
    });
}

NetFPMasterComFixture::Asked NetFPMasterComFixture::ask(const std::string& interfaceName) {
    Asked asked;
    asked.printed = printedBy([&] { asked.port = client.getSwitchPortForInterface(interfaceName); });
    return asked;
}
