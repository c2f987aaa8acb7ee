#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "MasterDump.hpp"
#include "MasterRecord.hpp"
#include "Outcomes.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"

using Boardsim::Board;

namespace {

using Lines = std::vector<std::string>;

constexpr const char* group = "01:00:5e:00:00:fb";

const std::string interfaces = "  eth0 port 1\n  eth1 port 2\n  eth2 port 3\n  eth3 port 4\nmirroring:\n";
const std::string receiveFailed =
    "AddMulticastMAC recv failed : (MAC: 01:00:5e:00:00:fb, interface: eth1, vlanID: 0)\n"
    "AddMulticastMAC failed\n";

/// A request for `group` on eth1 as the master's record shows it.
std::string record(const std::string& vlan, const std::string& ignoresVlan) {
    const std::string region = "6c757431305f726567696f6e5f6d6163" + std::string(32, '0');
    const std::string interface = "65746831" + std::string(56, '0');
    return "11000000" + region + "0008" + vlan + ignoresVlan + "000000" + std::string(12, '0') +
           "01005e0000fb" + interface + "01000000" + std::string(104, '0');
}

}  // namespace

TEST(AddMulticastMac, AddsAFilterForEveryVlan) {
    const Board board({});

    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1"}), quietSuccess);

    EXPECT_EQ(receivedByMaster(), Lines{record("0000", "01")});
    EXPECT_EQ(masterDump(), interfaces +
                                "multicast:\n"
                                "  lut10_region_mac eth1 01:00:5e:00:00:fb type 0x0800 vlan any\n");
}

TEST(AddMulticastMac, AddsFiltersForTheLow16BitsOfAVlan) {
    const Board board({});

    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1", "100"}), quietSuccess);
    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1", "65537"}), quietSuccess);
    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1", "-1"}), quietSuccess);

    EXPECT_EQ(receivedByMaster(), (Lines{record("6400", "00"), record("0100", "00"), record("ffff", "00")}));
    EXPECT_EQ(masterDump(), interfaces +
                                "multicast:\n"
                                "  lut10_region_mac eth1 01:00:5e:00:00:fb type 0x0800 vlan 100\n"
                                "  lut10_region_mac eth1 01:00:5e:00:00:fb type 0x0800 vlan 1\n"
                                "  lut10_region_mac eth1 01:00:5e:00:00:fb type 0x0800 vlan 65535\n");
}

TEST(AddMulticastMac, FailsIfTheCommandLineIsWrong) {
    const Board board({});
    const std::string longName(32, 'i');
    const struct {
        Lines arguments;
        std::string message;
    } cases[] = {
        {{group}, "AddMulticastMac : Not enough arguments\n"},
        {{"01:00:5e:00:00", "eth1"}, "AddMulticastMac : Cannot parse MAC address: 01:00:5e:00:00\n"},
        {{group, longName},
         "AddMulticastMac : Interface name is too long: 32, ifName: " + longName +
             " Maximum supported length is: 31\n"},
        {{group, "eth1", "abc"}, "AddMulticastMac : Cannot parse vlanID (not a number): abc\n"},
        {{group, "eth1", "1x"}, "AddMulticastMac : Cannot parse vlanID (not a number): 1x\n"},
    };
    for (const auto& [arguments, message] : cases) {
        Lines words{"addmulticastmac"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(korvel(words), failure(message));
    }
    EXPECT_EQ(receivedByMaster(), Lines{});
}

TEST(AddMulticastMac, FailsIfTheMasterRefusesTheFilter) {
    const Board board({});

    EXPECT_EQ(korvel({"addmulticastmac", "02:00:00:00:00:01", "eth9", "5"}),
              failure("Response from Server was not successful.\n"
                      "AddMulticastMAC recv failed : (MAC: 02:00:00:00:00:01, interface: eth9, vlanID: 5)\n"
                      "AddMulticastMAC failed\n"));

    EXPECT_EQ(masterDump(), interfaces);
}

TEST(AddMulticastMac, FailsIfTheMasterAnswersWithErrors) {
    const Board board(withMasterFault("error:-6"));

    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1"}),
              failure("Response from Server was not successful.\n" + receiveFailed));
}

TEST(AddMulticastMac, FailsIfTheMasterDoesNotAnswer) {
    for (const std::string fault : {"silent", "dying", "truncated:15"}) {
        SCOPED_TRACE(fault);
        const Board board(withMasterFault(fault));

        EXPECT_EQ(korvel({"addmulticastmac", group, "eth1"}), failure(receiveFailed));
    }
}

TEST(AddMulticastMac, WaitsForItsOwnAnswer) {
    const Board board(withMasterFault("stale"));

    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1"}), quietSuccess);
}

TEST(AddMulticastMac, FailsIfThereIsNoMaster) {
    EXPECT_EQ(korvel({"addmulticastmac", group, "eth1"}),
              failure("Failed to Send to Master Socket \"/tmp/NetfpMaster\": 2: No such file or directory\n"
                      "AddMulticastMAC send failed : (MAC: 01:00:5e:00:00:fb, interface: eth1, vlanID: 0)\n"
                      "AddMulticastMAC failed\n"));
}
