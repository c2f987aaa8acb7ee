// The interface of src/netfp.

#include <concepts>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "NetFPMasterCom.hpp"
#include "NetFPMasterSocket.hpp"

namespace {

using Korvel::NetFPMasterCom;
using std::same_as;

using Callback = bool (*)(NetfpMaster_Response*);

static_assert(std::default_initializable<NetFPMasterCom>);
static_assert(requires(NetFPMasterCom & channel, NetfpMaster_Request* request, Callback callback,
                       std::string name, Netfp_Direction direction) {
    { channel.connect() } -> same_as<bool>;
    { channel.close() } -> same_as<bool>;
    { channel.sendNetFPRequest(request) } -> same_as<bool>;
    { channel.receiveNetFpResponse(callback) } -> same_as<bool>;
    { channel.receiveNetFpResponse(nullptr) } -> same_as<bool>;
    { channel.getSwitchPortForInterface(name) } -> same_as<int>;
    { channel.setPortMirroring(true, direction, 1, 2) } -> same_as<bool>;
});
static_assert(requires(const std::string& path, unsigned timeout, NetfpMaster_Response* response) {
    { NetFPMasterCom::setMasterSocketPath(path) } -> same_as<void>;
    { NetFPMasterCom::getMasterSocketPath() } -> same_as<std::string>;
    { NetFPMasterCom::setClientSocketPath(path) } -> same_as<void>;
    { NetFPMasterCom::getClientSocketPath() } -> same_as<std::string>;
    { NetFPMasterCom::setTimeout(timeout) } -> same_as<void>;
    { NetFPMasterCom::getTimeout() } -> same_as<unsigned>;
    { NetFPMasterCom::alwaysTrueCallback(response) } -> same_as<bool>;
    { NetFPMasterCom::getSwitchPortForInterfaceCallback(response) } -> same_as<bool>;
});
static_assert(std::convertible_to<decltype(&NetFPMasterCom::alwaysTrueCallback), Callback>);
static_assert(std::convertible_to<decltype(&NetFPMasterCom::getSwitchPortForInterfaceCallback), Callback>);

static_assert(requires(int fd, const std::string& path, NetfpMaster_Request* request,
                       NetfpMaster_Response* response, unsigned id, int retries) {
    { Korvel::connectAndBindToLinuxSocket(path) } -> same_as<int>;
    { Korvel::sendNetFPRequest(fd, path, request) } -> same_as<bool>;
    { Korvel::receiveNetFpResponse(fd, response, id, retries) } -> same_as<bool>;
});

TEST(NetfpInterface, HasPathsAndATimeOutFromTheStart) {
    EXPECT_EQ(NetFPMasterCom::getMasterSocketPath(), "/tmp/NetfpMaster");
    EXPECT_EQ(NetFPMasterCom::getClientSocketPath(), "/tmp/Korvel");
    EXPECT_EQ(NetFPMasterCom::getTimeout(), 10U);
}

}  // namespace
