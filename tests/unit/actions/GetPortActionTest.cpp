// "getport": the switch port of an interface.

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "GetPortAction.hpp"
#include "KorvelHelp.hpp"
#include "NetFPMasterCom.hpp"
#include "NetfpMasterWire.hpp"
#include "OutOfRange.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"
#include "VerboseMode.hpp"

using Korvel::NetFPMasterCom;

namespace {

class GetPortActionTest : public testing::Test {
protected:
    void TearDown() override {
        Korvel::setVerboseMode(false);
        NetFPMasterCom::setTimeout(10);
        NetFPMasterCom::setMasterSocketPath("/tmp/NetfpMaster");
        NetFPMasterCom::setClientSocketPath("/tmp/Korvel");
    }

    void givenMasterResponds(std::int32_t errorCode, std::int32_t switchPort) {
        master.answers([=](const std::string& request, const ScriptedPeer::Reply& reply) {
            reply(masterResponse(idOfRequest(request), errorCode, switchPort));
        });
    }

    bool getPort(const std::vector<std::string>& arguments) {
        std::vector<std::string> words{"getport"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        ArgumentVector vector(words);
        bool success = false;
        printed = printedBy([&] { success = action.run(vector.argc(), vector.argv()); });
        return success;
    }

    /// The names in the requests to the master.
    std::vector<std::string> requestedNames() const {
        std::vector<std::string> names;
        for (const std::string& request : master.requests()) {
            names.emplace_back(request.substr(8, 32).c_str());
        }
        return names;
    }

    ScriptedPeer master = ScriptedPeer::atPath("/tmp/NetfpMaster");
    Korvel::GetPortAction action;
    Printed printed;
};

Printed invalidPort(const std::string& argument) {
    return {.err = "Get Port: Invalid port number \"" + argument + "\"\n"};
}

}  // namespace

TEST_F(GetPortActionTest, PrintsThePortThatTheMasterReturns) {
    givenMasterResponds(0, 3);

    EXPECT_TRUE(getPort({"eth1"}));

    EXPECT_EQ(printed, (Printed{.out = "3\n"}));
    ASSERT_EQ(master.requests().size(), 1);
    const std::string request = master.requests().front();
    EXPECT_EQ(request, masterRequest(4, idOfRequest(request), "eth1"));
}

TEST_F(GetPortActionTest, PrintsAPortNumberWithoutARequestToTheMaster) {
    const struct {
        std::string argument;
        std::string port;
    } cases[] = {{"1", "1\n"},
                 {"4", "4\n"},
                 {"2x", "2\n"},
                 {" 3", "3\n"},
                 {"\t\n 3", "3\n"},
                 {"+4", "4\n"},
                 {"0000000000001", "1\n"},
                 {"3 4", "3\n"}};
    for (const auto& [argument, port] : cases) {
        EXPECT_TRUE(getPort({argument}));
        EXPECT_EQ(printed, Printed{.out = port}) << argument;
    }
    EXPECT_EQ(requestedNames(), std::vector<std::string>{});
}

TEST_F(GetPortActionTest, RefusesAnInvalidPortWithoutARequestToTheMaster) {
    for (const std::string argument : {"0", "-0", "0x", "5", "7", "7up", "256", "2147483647"}) {
        EXPECT_TRUE(getPort({argument}));
        EXPECT_EQ(printed, invalidPort(argument));
    }
    EXPECT_EQ(requestedNames(), std::vector<std::string>{});
}

TEST_F(GetPortActionTest, TreatsANegativeNumberAsAnInterfaceName) {
    givenMasterResponds(0, 1);

    for (const std::string argument : {"-1", "-2147483648", "-3eth"}) {
        EXPECT_TRUE(getPort({argument}));
        EXPECT_EQ(printed, (Printed{.out = "1\n"}));
    }

    EXPECT_EQ(requestedNames(), (std::vector<std::string>{"-1", "-2147483648", "-3eth"}));
}

TEST_F(GetPortActionTest, TreatsAWordWithoutLeadingDigitsAsAnInterfaceName) {
    givenMasterResponds(0, 2);

    for (const std::string argument : {"eth1", "", " ", "x2", "+", "- 1", "--1"}) {
        EXPECT_TRUE(getPort({argument}));
        EXPECT_EQ(printed, (Printed{.out = "2\n"})) << argument;
    }
}

TEST_F(GetPortActionTest, ThrowsForANumberBeyond32Bits) {
    for (const std::string argument :
         {"2147483648", "-2147483649", "4294967297", "99999999999999999999", "-99999999999999999999x"}) {
        expectOutOfRange(action, {"getport", argument},
                         "Get Port: Port number out of range \"" + argument + "\"");
    }
    EXPECT_EQ(requestedNames(), std::vector<std::string>{});
}

TEST_F(GetPortActionTest, NeedsAnArgumentAfterTheKeyword) {
    EXPECT_FALSE(getPort({}));

    EXPECT_EQ(printed, (Printed{.err = "Get Port: Not enough arguments\n"}));
}

TEST_F(GetPortActionTest, IgnoresFurtherArguments) {
    EXPECT_TRUE(getPort({"2", "eth1", "3"}));

    EXPECT_EQ(printed, (Printed{.out = "2\n"}));
}

TEST_F(GetPortActionTest, ReportsAnInvalidPortOfTheMaster) {
    for (const int port : {0, 5, -1, 2147483647}) {
        givenMasterResponds(0, port);

        EXPECT_TRUE(getPort({"eth1"}));
        EXPECT_EQ(printed, invalidPort("eth1"));
    }
}

TEST_F(GetPortActionTest, ReportsAnUnknownInterfaceAndSucceeds) {
    givenMasterResponds(-1, 3);

    EXPECT_TRUE(getPort({"eth9"}));

    EXPECT_EQ(printed, (Printed{.err = "Response from Server was not successful.\n"
                                       "Get Port: Invalid port number \"eth9\"\n"}));
}

TEST_F(GetPortActionTest, ReportsASilentMasterAndSucceeds) {
    NetFPMasterCom::setTimeout(1);

    EXPECT_TRUE(getPort({"eth1"}));

    EXPECT_EQ(printed, invalidPort("eth1"));
}

TEST_F(GetPortActionTest, ReportsAMissingMasterAndSucceeds) {
    NetFPMasterCom::setMasterSocketPath("/tmp/nobody");

    EXPECT_TRUE(getPort({"eth1"}));

    EXPECT_EQ(printed, (Printed{.err = "Failed to Send to Master Socket \"/tmp/nobody\": 2: No such file or "
                                       "directory\n"
                                       "Get Port: Invalid port number \"eth1\"\n"}));
}

TEST_F(GetPortActionTest, ReportsAClientSocketThatCannotBeBoundAndSucceeds) {
    NetFPMasterCom::setClientSocketPath("/tmp/missing/Korvel");

    EXPECT_TRUE(getPort({"eth1"}));

    EXPECT_EQ(printed, (Printed{.err = "Failed to Bind to Client Socket: 2: No such file or directory\n"
                                       "Get Port: Invalid port number \"eth1\"\n"}));
    EXPECT_EQ(requestedNames(), std::vector<std::string>{});
}

TEST_F(GetPortActionTest, PrintsEachStepInVerboseMode) {
    givenMasterResponds(0, 3);
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(getPort({"eth1"}));

    const std::string id = std::to_string(idOfRequest(master.requests().at(0)));
    EXPECT_EQ(printed, (Printed{.out = "Get Port Entry\n"
                                       "Get Port: Retrieving port number for \"eth1\"\n"
                                       "Creating Socket for Client\n"
                                       "Binding to Client Socket \"/tmp/Korvel\"\n"
                                       "Sending get interface request for \"eth1\"\n"
                                       "Received response ID: " +
                                       id +
                                       ", Error Code: 0\n"
                                       "Receive Success Response.  Port Number: 3\n"
                                       "Client Socket closed\n"
                                       "3\n"}));
}

TEST_F(GetPortActionTest, ReportsInVerboseModeThatItUsesANumber) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(getPort({"4"}));

    EXPECT_EQ(printed, (Printed{.out = "Get Port Entry\n"
                                       "Get Port: Retrieving port number for \"4\"\n"
                                       "Get Port: Using port number value\n"
                                       "4\n"}));
}

TEST_F(GetPortActionTest, PrintsItsEntryInVerboseModeEvenWithoutArguments) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(getPort({}));

    EXPECT_EQ(printed, (Printed{.out = "Get Port Entry\n", .err = "Get Port: Not enough arguments\n"}));
}

TEST_F(GetPortActionTest, PrintsItsHelp) {
    EXPECT_EQ(action.getKeyword(), "getport");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("getport", "<>", "/bin/k")}));
}
