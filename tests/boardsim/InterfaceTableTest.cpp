#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "InterfaceTable.hpp"

using Boardsim::InterfaceTable;

namespace {

constexpr const char* interfaces =
    "interfaces:\n  eth0 port 1\n  eth1 port 2\n  eth2 port 3\n  eth3 port 4\nmirroring:\n";

NetfpMaster_SetPortMirroring wish(std::uint32_t enable, Netfp_Direction direction, std::uint8_t from,
                                  std::uint8_t to) {
    return {enable, direction, from, to, {}};
}

/// A filter for a group's address on eth1.
NetfpMaster_AddMulticastMac filter(std::uint16_t vlan) {
    NetfpMaster_AddMulticastMac wish{};
    std::string_view("region").copy(wish.regionName, sizeof wish.regionName);
    wish.etherType = 0x0800;
    wish.vlanId = vlan;
    wish.ignoreVlan = vlan == 0 ? 1 : 0;
    std::ranges::copy(std::to_array<std::uint8_t>({0x01, 0x00, 0x5e, 0x00, 0x0a, 0xfb}), wish.mac);
    std::string_view("eth1").copy(wish.interfaceName, sizeof wish.interfaceName);
    return wish;
}

}  // namespace

TEST(InterfaceTableTest, HoldsThePortsOfTheBoardsInterfaces) {
    const InterfaceTable table;

    EXPECT_EQ(table.portOf("eth0"), 1);
    EXPECT_EQ(table.portOf("eth3"), 4);
    EXPECT_EQ(table.portOf("eth4"), std::nullopt);
    EXPECT_EQ(table.text(), interfaces);
}

TEST(InterfaceTableTest, MirrorsEachDirectionOfAPortOnItsOwn) {
    InterfaceTable table;

    EXPECT_TRUE(table.setMirroring(wish(1, Netfp_Direction_INBOUND, 1, 2)));
    EXPECT_TRUE(table.setMirroring(wish(1, Netfp_Direction_OUTBOUND, 1, 3)));
    EXPECT_EQ(table.text(),
              std::string(interfaces) + "  inbound port 1 to port 2\n  outbound port 1 to port 3\n");

    EXPECT_TRUE(table.setMirroring(wish(0, Netfp_Direction_INBOUND, 1, 2)));
    EXPECT_EQ(table.text(), std::string(interfaces) + "  outbound port 1 to port 3\n");
}

TEST(InterfaceTableTest, RefusesMirroringThatTheSwitchDoesNotSupport) {
    InterfaceTable table;
    const NetfpMaster_SetPortMirroring wishes[] = {
        wish(1, Netfp_Direction_INBOUND, 0, 2),         wish(1, Netfp_Direction_INBOUND, 1, 5),
        wish(1, Netfp_Direction_INBOUND, 2, 2),         wish(2, Netfp_Direction_INBOUND, 1, 2),
        wish(1, static_cast<Netfp_Direction>(3), 1, 2),
    };
    for (const NetfpMaster_SetPortMirroring& each : wishes) {
        EXPECT_FALSE(table.setMirroring(each));
    }
    EXPECT_EQ(table.text(), interfaces);
}

TEST(InterfaceTableTest, KeepsThePortOfARenamedInterface) {
    InterfaceTable table;

    EXPECT_TRUE(table.rename("eth1", "wan"));

    EXPECT_EQ(table.portOf("wan"), 2);
    EXPECT_EQ(table.portOf("eth1"), std::nullopt);
    EXPECT_EQ(table.text(),
              "interfaces:\n  eth0 port 1\n  eth2 port 3\n  eth3 port 4\n  wan port 2\nmirroring:\n");
}

TEST(InterfaceTableTest, RefusesRenamesOfUnknownInterfacesAndToInvalidNames) {
    InterfaceTable table;

    EXPECT_FALSE(table.rename("eth9", "wan"));
    EXPECT_FALSE(table.rename("", "wan"));
    EXPECT_FALSE(table.rename("eth0", ""));
    EXPECT_FALSE(table.rename("eth0", "eth1"));
    EXPECT_FALSE(table.rename("eth0", "eth0"));

    EXPECT_EQ(table.text(), interfaces);
}

TEST(InterfaceTableTest, ListsMulticastFiltersInTheirOrder) {
    InterfaceTable table;

    EXPECT_TRUE(table.addMulticast(filter(100)));
    EXPECT_TRUE(table.addMulticast(filter(0)));

    EXPECT_EQ(table.text(), std::string(interfaces) +
                                "multicast:\n"
                                "  region eth1 01:00:5e:00:0a:fb type 0x0800 vlan 100\n"
                                "  region eth1 01:00:5e:00:0a:fb type 0x0800 vlan any\n");
}

TEST(InterfaceTableTest, RefusesFiltersThatTheSwitchDoesNotSupport) {
    InterfaceTable table;
    NetfpMaster_AddMulticastMac unknownInterface = filter(0);
    unknownInterface.interfaceName[3] = '9';
    NetfpMaster_AddMulticastMac noGroup = filter(0);
    noGroup.mac[0] = 0x02;
    NetfpMaster_AddMulticastMac namedAndIgnored = filter(100);
    namedAndIgnored.ignoreVlan = 1;
    NetfpMaster_AddMulticastMac neitherNamedNorIgnored = filter(0);
    neitherNamedNorIgnored.ignoreVlan = 0;

    for (const auto& wish : {unknownInterface, noGroup, namedAndIgnored, neitherNamedNorIgnored}) {
        EXPECT_FALSE(table.addMulticast(wish));
    }

    EXPECT_EQ(table.text(), interfaces);
}
