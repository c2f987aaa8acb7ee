#include "AddMulticastMACFixture.hpp"

#include "NetfpMasterWire.hpp"
#include "WireNumber.hpp"

void AddMulticastMACFixture::givenMasterResponds(std::int32_t errorCode) {
    givenMaster({}, [=](std::size_t /*number*/) { return errorCode; });
}

bool AddMulticastMACFixture::add(const Words& arguments) {
    Words words{"addmulticastmac"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(action, words);
}

void AddMulticastMACFixture::expectFailure(const Words& arguments, const std::string& message) {
    EXPECT_FALSE(add(arguments)) << message;
    EXPECT_EQ(printed, Printed{.err = message});
}

std::string AddMulticastMACFixture::request(const Filter& filter) {
    std::string bytes = masterRequest(17, 0, "lut10_region_mac");
    bytes.replace(40, 2, std::string("\x00\x08", 2));
    bytes.replace(42, 2, littleEndian(filter.vlan).substr(0, 2));
    bytes.replace(44, 4, littleEndian(filter.ignoresVlan));
    bytes.replace(54, 6, filter.mac);
    bytes.replace(60, filter.interface.size(), filter.interface);
    bytes.replace(92, 4, littleEndian(1));
    return bytes;
}
