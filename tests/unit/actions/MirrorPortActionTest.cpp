// "mirrorport": copies the traffic of one switch port to another.

#include "KorvelHelp.hpp"
#include "MirrorPortAction.hpp"
#include "NetfpMasterWire.hpp"
#include "OutOfRange.hpp"
#include "PortActionFixture.hpp"
#include "VerboseMode.hpp"
#include "WireNumber.hpp"

namespace {

using Words = std::vector<std::string>;

enum Direction : std::uint32_t { inbound = 1, outbound = 2 };

class MirrorPortActionTest : public PortActionFixture {
protected:
    /// Runs the action with these words after its keyword.
    bool mirror(const Words& arguments) {
        Words words{"mirrorport"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(action, words);
    }

    void expectRefused(const Words& arguments, const std::string& message) {
        EXPECT_FALSE(mirror(arguments)) << message;
        EXPECT_EQ(printed, (Printed{.err = message + "\n"}));
    }

    /// The body of a request, as requests() shows it.
    static std::string body(std::uint32_t enable, Direction direction, int from, int to) {
        std::string bytes = littleEndian(enable) + littleEndian(direction);
        bytes += static_cast<char>(from);
        bytes += static_cast<char>(to);
        bytes.resize(140);
        return bytes;
    }

    static Words bothDirections(std::uint32_t enable, int from, int to) {
        return {body(enable, inbound, from, to), body(enable, outbound, from, to)};
    }

    Korvel::MirrorPortAction action;
};

}  // namespace

TEST_F(MirrorPortActionTest, AsksForThePortsAndMirrorsBothDirections) {
    givenMaster({{"eth0", 1}, {"eth1", 2}});

    EXPECT_TRUE(mirror({"enable", "eth0", "eth1"}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requests(), (Words{"port eth0", "port eth1", body(1, inbound, 1, 2), body(1, outbound, 1, 2)}));
}

TEST_F(MirrorPortActionTest, SendsRequestsOf148BytesOfType14) {
    givenMaster({});

    mirror({"enable", "3", "4"});

    for (const std::string& request : master.requests()) {
        EXPECT_EQ(request, masterRequest(setPortMirroring, idOfRequest(request), request.substr(8, 10)));
    }
    EXPECT_EQ(requests(), bothDirections(1, 3, 4));
}

TEST_F(MirrorPortActionTest, UsesPortNumbersUnchanged) {
    givenMaster({});

    EXPECT_TRUE(mirror({"en", "2", "3"}));
    EXPECT_EQ(requests(), bothDirections(1, 2, 3));
}

TEST_F(MirrorPortActionTest, PassesAToPortAboveTheLastToTheMaster) {
    givenMaster({});

    EXPECT_TRUE(mirror({"dis", "1", "9"}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requests(), bothDirections(0, 1, 9));
}

TEST_F(MirrorPortActionTest, IgnoresFurtherArguments) {
    givenMaster({});

    EXPECT_TRUE(mirror({"d", "4", "1", "2", "x"}));
    EXPECT_EQ(requests(), bothDirections(0, 4, 1));
}

TEST_F(MirrorPortActionTest, NeedsThreeArguments) {
    for (const Words& arguments : std::vector<Words>{{}, {"enable"}, {"enable", "eth0"}}) {
        expectRefused(arguments, "Port Mirroring: Not enough arguments");
    }
    EXPECT_EQ(requests(), Words{});
}

TEST_F(MirrorPortActionTest, AcceptsOnlyEnableAndDisable) {
    for (const std::string word : {"Enable", "ENABLE", "ena", "", "1", "disabled"}) {
        expectRefused({word, "1", "2"}, "Port Mirroring: Could not find enable/disable");
    }
    EXPECT_EQ(requests(), Words{});
}

TEST_F(MirrorPortActionTest, RefusesAnInvalidFromPort) {
    givenMaster({{"eth0", 0}, {"eth5", 5}});

    for (const std::string from : {"0", "5", "2147483647", "eth0", "eth5"}) {
        expectRefused({"enable", from, "1"}, "Port Mirroring: Invalid 'from' port number ");
    }
    EXPECT_EQ(requests(), (Words{"port eth0", "port eth5"}));
}

TEST_F(MirrorPortActionTest, RefusesAToPortThatIsNotAboveZero) {
    givenMaster({{"eth0", 0}});

    for (const std::string to : {"0", "eth0"}) {
        expectRefused({"enable", "1", to}, "Port Mirroring: Invalid 'to' port number ");
    }
}

TEST_F(MirrorPortActionTest, AsksForThePortOfNegativeNumbersAndOtherWords) {
    givenMaster({{"-1", 1}, {"", 2}});

    EXPECT_TRUE(mirror({"e", "-1", ""}));
    EXPECT_EQ(requests(), (Words{"port -1", "port ", body(1, inbound, 1, 2), body(1, outbound, 1, 2)}));
}

TEST_F(MirrorPortActionTest, ReportsAnUnknownInterface) {
    givenMaster({{"eth0", 1}});
    const std::string refusal = "Response from Server was not successful.\n";

    expectRefused({"enable", "eth9", "eth0"}, refusal + "Port Mirroring: Invalid 'from' port number ");
    expectRefused({"enable", "eth0", "eth9"}, refusal + "Port Mirroring: Invalid 'to' port number ");

    EXPECT_EQ(requests(), (Words{"port eth9", "port eth0", "port eth9"}));
}

TEST_F(MirrorPortActionTest, ThrowsForANumberBeyond32Bits) {
    for (const std::string number : {"2147483648", "-2147483649", "99999999999999999999"}) {
        const std::string message = "Port Mirroring: Port number out of range \"" + number + "\"";
        expectOutOfRange(action, {"mirrorport", "enable", number, "1"}, message);
        expectOutOfRange(action, {"mirrorport", "enable", "1", number}, message);
    }
    EXPECT_EQ(requests(), Words{});
}

TEST_F(MirrorPortActionTest, SkipsTheOutboundDirectionIfTheMasterRefusesTheInboundOneAndSucceeds) {
    givenMaster({}, [](std::size_t /*number*/) { return -4; });

    EXPECT_TRUE(mirror({"enable", "1", "2"}));

    EXPECT_EQ(printed, (Printed{.err = "Response from Server was not successful.\n"}));
    EXPECT_EQ(requests(), Words{body(1, inbound, 1, 2)});
}

TEST_F(MirrorPortActionTest, SucceedsEvenIfTheMasterRefusesTheOutboundDirection) {
    givenMaster({}, [](std::size_t number) { return number == 1 ? -4 : 0; });
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(mirror({"enable", "1", "2"}));

    EXPECT_EQ(requests(), bothDirections(1, 1, 2));
    EXPECT_EQ(printed.out.find("Port Mirroring Request successful"), std::string::npos);
    EXPECT_EQ(printed.err, "Response from Server was not successful.\n");
}

TEST_F(MirrorPortActionTest, PrintsEachStepInVerboseMode) {
    givenMaster({});
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(mirror({"disable", "1", "2"}));

    const std::string id = std::to_string(idOfRequest(master.requests().front()));
    const std::string answered =
        "Received response ID: " + id + ", Error Code: 0\nReceived Success Response\n";
    EXPECT_EQ(
        printed,
        (Printed{.out = "Port Mirroring Entry\n"
                        "Port Mirroring: Retrieving port number for \"1\"\n"
                        "Port Mirroring: Using port number value\n"
                        "Port Mirroring: Retrieving port number for \"2\"\n"
                        "Port Mirroring: Using port number value\n"
                        "Port Mirroring: \n"
                        "Disabling port 1 ---> port 2\n"
                        "Creating Socket for Client\n"
                        "Binding to Client Socket \"/tmp/Korvel\"\n"
                        "Sending Inbound Port Mirroring Disable request Message.\n" +
                        answered + "Sending Outbound Port Mirroring Disable request Message.\n" + answered +
                        "Port Mirroring Request successful\n"
                        "Client Socket closed\n"}));
}

TEST_F(MirrorPortActionTest, PrintsItsHelp) {
    EXPECT_EQ(action.getKeyword(), "mirrorport");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("mirrorport", "<>", "/bin/k")}));
}
