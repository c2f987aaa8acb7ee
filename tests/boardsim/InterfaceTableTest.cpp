#include <gtest/gtest.h>

#include "InterfaceTable.hpp"

namespace {

constexpr const char* interfaces =
    "interfaces:\n  eth0 port 1\n  eth1 port 2\n  eth2 port 3\n  eth3 port 4\nmirroring:\n";

NetfpMaster_SetPortMirroring wish(std::uint32_t enable, Netfp_Direction direction, std::uint8_t from,
                                  std::uint8_t to) {
    return {enable, direction, from, to};
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

TEST(InterfaceTableTest, RefusesMirroringThatTheSwitchCannotDo) {
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
