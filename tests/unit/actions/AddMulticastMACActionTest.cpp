// "addmulticastmac": lets frames to a multicast address through to an interface.

#include <limits>

#include "AddMulticastMACFixture.hpp"
#include "KorvelHelp.hpp"
#include "NetfpMasterWire.hpp"
#include "VerboseMode.hpp"

namespace {

class AddMulticastMACActionTest : public AddMulticastMACFixture {
protected:
    void SetUp() override { givenMasterResponds(0); }

    /// Runs the action, which must succeed silently, and compares the one request that it sends.
    void expectSent(const Words& arguments, const Filter& filter) {
        const std::size_t before = master.requests().size();
        EXPECT_TRUE(add(arguments)) << printed;
        EXPECT_EQ(printed, Printed{});
        const Words all = requestsWithoutIdentifiers();
        ASSERT_EQ(all.size(), before + 1);
        EXPECT_EQ(all.back(), request(filter));
    }

    void expectRefused(const Words& arguments, const std::string& message) {
        expectFailure(arguments, message + "\n");
        EXPECT_EQ(requestsWithoutIdentifiers(), Words{});
    }
};

constexpr const char* group = "01:00:5e:00:00:01";

}  // namespace

TEST_F(AddMulticastMACActionTest, SendsTheAddressTheInterfaceAndTheVlan) {
    EXPECT_TRUE(add({"01:80:c2:fe:0a:7f", "eth1", "258"}));

    std::string expected(148, '\0');
    expected[0] = 17;
    expected.replace(8, 16, "lut10_region_mac");
    expected.replace(40, 8,
                     std::string("\x00\x08\x02\x01\x00\x00\x00\x00", 8));  // IPv4, VLAN 0x0102, matched
    expected.replace(54, 6, "\x01\x80\xc2\xfe\x0a\x7f").replace(60, 4, "eth1");
    expected[92] = 1;
    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requestsWithoutIdentifiers(), Words{expected});
}

TEST_F(AddMulticastMACActionTest, MatchesEveryVlanIfNoVlanOrVlan0IsGiven) {
    expectSent({group, "eth0"}, {.vlan = 0, .ignoresVlan = 1});
    expectSent({group, "eth0", "0"}, {.vlan = 0, .ignoresVlan = 1});
}

TEST_F(AddMulticastMACActionTest, DoesNotKeepTheVlanOfAnEarlierRun) {
    expectSent({group, "eth0", "100"}, {.vlan = 100, .ignoresVlan = 0});
    expectSent({group, "eth0"}, {.vlan = 0, .ignoresVlan = 1});
}

TEST_F(AddMulticastMACActionTest, CutsTheVlanTo16Bits) {
    const struct {
        std::string text;
        std::uint16_t vlan;
    } cases[] = {
        {"100", 100},          {"4095", 4095}, {"65535", 65535}, {"65536", 0},  {"65537", 1}, {"131077", 5},
        {"4294967295", 65535}, {"-0", 0},      {"-1", 65535},    {"-65535", 1}, {"+5", 5},    {" 5", 5},
        {"\t\n 007", 7}};
    for (const auto& [text, vlan] : cases) {
        SCOPED_TRACE(text);
        expectSent({group, "eth0", text}, {.vlan = vlan, .ignoresVlan = vlan == 0 ? 1U : 0U});
    }
}

TEST_F(AddMulticastMACActionTest, AcceptsVlansUpToAnUnsignedLong) {
    const std::string greatest = std::to_string(std::numeric_limits<unsigned long>::max());

    expectSent({group, "eth0", greatest}, {.vlan = 65535, .ignoresVlan = 0});
    expectSent({group, "eth0", "-" + greatest}, {.vlan = 1, .ignoresVlan = 0});
}

TEST_F(AddMulticastMACActionTest, RefusesAVlanThatThePlatformCannotParse) {
    for (const std::string text :
         {"abc", "", " ", "-", "+", "5x", "5 ", "-1x", "0x10", "1e3", "--1", "18446744073709551616",
          "-18446744073709551616", "99999999999999999999999"}) {
        expectRefused({group, "eth0", text}, "AddMulticastMac : Cannot parse vlanID (not a number): " + text);
    }
}

TEST_F(AddMulticastMACActionTest, ParsesAddressesAsTheSystemDoes) {
    const struct {
        std::string text;
        std::string bytes;
    } cases[] = {
        {"01:00:5e:00:00:01", {"\x01\x00\x5e\x00\x00\x01", 6}},
        {"1:0:5e:0:0:1", {"\x01\x00\x5e\x00\x00\x01", 6}},
        {"01:00:5E:aB:Cd:EF", {"\x01\x00\x5e\xab\xcd\xef", 6}},
        {"ff:ff:ff:ff:ff:ff", "\xff\xff\xff\xff\xff\xff"},
        {"00:11:22:33:44:55", {"\x00\x11\x22\x33\x44\x55", 6}},  // a host's address; the master may refuse it
        {"01:00:5e:00:00:01:02", {"\x01\x00\x5e\x00\x00\x01", 6}},  // the sixth byte is the last
    };
    for (const auto& [text, bytes] : cases) {
        SCOPED_TRACE(text);
        expectSent({text, "eth0"}, {.mac = bytes});
    }
}

TEST_F(AddMulticastMACActionTest, RefusesAnInvalidAddress) {
    for (const std::string text :
         {"", "eth0", "01:00:5e:00:00", "01:00:5e:00:00:", "01-00-5e-00-00-01", "01005e000001",
          "001:00:5e:00:00:01", "01:00:5g:00:00:01", " 1:0:5e:0:0:1", "01::5e:00:00:01"}) {
        expectRefused({text, "eth0"}, "AddMulticastMac : Cannot parse MAC address: " + text);
    }
}

TEST_F(AddMulticastMACActionTest, AcceptsInterfaceNamesOf31Characters) {
    const std::string name(31, 'i');

    expectSent({group, name}, {.interface = name});
    expectSent({group, ""}, {.interface = ""});
}

TEST_F(AddMulticastMACActionTest, RefusesLongerInterfaceNames) {
    for (const auto length : std::initializer_list<std::size_t>{32, 33, 4096}) {
        const std::string name(length, 'i');
        expectRefused({group, name, "abc"},
                      "AddMulticastMac : Interface name is too long: " + std::to_string(length) +
                          ", ifName: " + name + " Maximum supported length is: 31");
    }
}

TEST_F(AddMulticastMACActionTest, NeedsAnAddressAndAnInterface) {
    for (const Words& arguments : {Words{}, Words{group}, Words{"no address"}}) {
        expectRefused(arguments, "AddMulticastMac : Not enough arguments");
    }
}

TEST_F(AddMulticastMACActionTest, ReportsABadAddressFirst) {
    expectRefused({"x", std::string(32, 'i'), "abc"}, "AddMulticastMac : Cannot parse MAC address: x");
}

TEST_F(AddMulticastMACActionTest, IgnoresFurtherArguments) {
    expectSent({group, "eth0", "7", "8", "x"}, {.vlan = 7, .ignoresVlan = 0});
}

TEST_F(AddMulticastMACActionTest, PrintsEachStepInVerboseMode) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(add({group, "eth0"}));

    EXPECT_EQ(printed, (Printed{.out = "AddMulticastMac Entry\n"
                                       "AddMulticastMac Entry: vlanID not specified. Using default value: "
                                       "vlanID: 0\n" +
                                       std::string(connecting) + received(master.requests().at(0)) +
                                       "Client Socket closed\n"}));
}

TEST_F(AddMulticastMACActionTest, DoesNotMentionTheDefaultInVerboseModeIfAVlanIsGiven) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(add({group, "eth0", "0"}));

    EXPECT_EQ(printed, (Printed{.out = "AddMulticastMac Entry\n" + std::string(connecting) +
                                       received(master.requests().at(0)) + "Client Socket closed\n"}));
}

TEST_F(AddMulticastMACActionTest, PrintsItsEntryInVerboseModeEvenWithoutArguments) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(add({}));

    EXPECT_EQ(printed,
              (Printed{.out = "AddMulticastMac Entry\n", .err = "AddMulticastMac : Not enough arguments\n"}));
}

TEST_F(AddMulticastMACActionTest, PrintsItsHelp) {
    EXPECT_EQ(action.getKeyword(), "addmulticastmac");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("addmulticastmac", "<>", "/bin/k")}));
}
