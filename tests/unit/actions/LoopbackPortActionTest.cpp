// "loopbackport": writes a switch port's registers with "devmem", here the simulated board's command.

#include <filesystem>

#include "FailingCall.hpp"
#include "KorvelHelp.hpp"
#include "LoopbackPortAction.hpp"
#include "OutOfRange.hpp"
#include "PortActionFixture.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

namespace {

using Words = std::vector<std::string>;

class LoopbackPortActionTest : public PortActionFixture {
protected:
    /// Runs the action with these words after its keyword.
    bool loop(const Words& arguments) {
        Words words{"loopbackport"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(action, words);
    }

    void expectRefused(const Words& arguments, const std::string& message) {
        EXPECT_FALSE(loop(arguments)) << message;
        EXPECT_EQ(printed, (Printed{.err = message + "\n"}));
        EXPECT_EQ(commands(), Words{});
    }

    /// The commands since the last call, as the board received them.
    static Words commands() {
        const char* const record = "/run/boardsim/received/devmem";
        if (!std::filesystem::exists(record)) {
            return {};
        }
        Words lines = linesOfFile(record);
        std::filesystem::remove(record);
        return lines;
    }

    Korvel::LoopbackPortAction action;
};

}  // namespace

TEST_F(LoopbackPortActionTest, WritesTheRegistersOfEachPortInTheirOrder) {
    const struct {
        std::string port;
        Words commands;
    } cases[] = {
        {"1",
         {"devmem 0x02090110 32 0", "devmem 0x02090104 32 2", "devmem 0x02090110 32 0x00000030",
          "devmem 0x02090104 32 0"}},
        {"2",
         {"devmem 0x02090210 32 0", "devmem 0x02090204 32 2", "devmem 0x02090210 32 0x00000030",
          "devmem 0x02090204 32 0"}},
        {"3",
         {"devmem 0x02090410 32 0", "devmem 0x02090404 32 2", "devmem 0x02090410 32 0x00000030",
          "devmem 0x02090404 32 0"}},
        {"4",
         {"devmem 0x02090510 32 0", "devmem 0x02090504 32 2", "devmem 0x02090510 32 0x00000030",
          "devmem 0x02090504 32 0"}},
    };
    for (const auto& each : cases) {
        EXPECT_TRUE(loop({"enable", each.port}));
        EXPECT_EQ(printed, Printed{});
        EXPECT_EQ(commands(), each.commands);
    }
    EXPECT_EQ(requests(), Words{});
}

TEST_F(LoopbackPortActionTest, TakesAPortOutOfLoopback) {
    for (const std::string word : {"disable", "d", "dis"}) {
        EXPECT_TRUE(loop({word, "1"}));
        EXPECT_EQ(commands(), (Words{"devmem 0x02090110 32 0", "devmem 0x02090104 32 2",
                                     "devmem 0x02090110 32 0x00000000", "devmem 0x02090104 32 0"}));
    }
}

TEST_F(LoopbackPortActionTest, AsksTheMasterForThePortOfAnInterface) {
    givenMaster({{"eth2", 3}});

    EXPECT_TRUE(loop({"en", "eth2", "ignored"}));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(requests(), Words{"port eth2"});
    EXPECT_EQ(commands().front(), "devmem 0x02090410 32 0");
}

TEST_F(LoopbackPortActionTest, NeedsTwoArguments) {
    expectRefused({}, "Loopback Port: Not enough arguments");
    expectRefused({"enable"}, "Loopback Port: Not enough arguments");
}

TEST_F(LoopbackPortActionTest, AcceptsOnlyEnableAndDisable) {
    for (const std::string word : {"Enable", "ena", "", "0"}) {
        expectRefused({word, "1"}, "Loopback Port: Could not find enable/disable");
    }
}

TEST_F(LoopbackPortActionTest, RefusesAnInvalidPortWithoutARequestToTheMaster) {
    for (const std::string port : {"0", "5", "2147483647", "5eth"}) {
        expectRefused({"enable", port}, "Loopback Port: Invalid port number \"" + port + "\"");
    }
    EXPECT_EQ(requests(), Words{});
}

TEST_F(LoopbackPortActionTest, ReportsAnUnknownInterface) {
    givenMaster({});

    expectRefused({"enable", "eth9"},
                  "Response from Server was not successful.\nLoopback Port: Invalid port number \"eth9\"");
    EXPECT_EQ(requests(), Words{"port eth9"});
}

TEST_F(LoopbackPortActionTest, ThrowsForANumberBeyond32Bits) {
    for (const std::string number : {"2147483648", "-2147483649", "99999999999999999999"}) {
        expectOutOfRange(action, {"loopbackport", "enable", number},
                         "Loopback Port: Port number out of range \"" + number + "\"");
    }
    EXPECT_EQ(commands(), Words{});
}

TEST_F(LoopbackPortActionTest, StopsAtTheFirstCommandThatCannotBeRun) {
    Korvel::setVerboseMode(true);
    bool success = true;

    printed = printedBy([&] {
        runFailing({.number = SYS_wait4, .error = ECHILD},
                   [&] { success = Korvel::LoopbackPortAction::executeLoopbackCommand(true, 1); });
    });

    EXPECT_FALSE(success);
    EXPECT_EQ(printed, (Printed{.out = "Loopback Port: Enabling Loopback Port 1\n"
                                       "Loopback Port: System call \"devmem 0x02090110 32 0\"\n",
                                .err = "Loopback Port: System call failed\n"}));
}

TEST_F(LoopbackPortActionTest, SucceedsIfTheLastCommandCanBeRun) {
    EXPECT_TRUE(Korvel::LoopbackPortAction::executeLoopbackCommand(false, 2));

    EXPECT_EQ(commands(), (Words{"devmem 0x02090210 32 0", "devmem 0x02090204 32 2",
                                 "devmem 0x02090210 32 0x00000000", "devmem 0x02090204 32 0"}));
}

TEST_F(LoopbackPortActionTest, IgnoresTheExitStatusOfACommand) {
    ::setenv("PATH", "/nowhere", 1);  // applies to this process and its children until the test ends

    EXPECT_TRUE(loop({"enable", "1"}));

    EXPECT_EQ(printed.out, "");
    EXPECT_EQ(commands(), Words{});
}

TEST_F(LoopbackPortActionTest, PrintsEachStepInVerboseMode) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(loop({"enable", "3"}));

    EXPECT_EQ(printed, (Printed{.out = "Loopback Port Entry\n"
                                       "Parsing optional arguments\n"
                                       "Loopback Port: Retrieving port number for \"3\"\n"
                                       "Loopback Port: Using port number value\n"
                                       "Loopback Port: Enabling Loopback Port 3\n"
                                       "Loopback Port: System call \"devmem 0x02090410 32 0\"\n"
                                       "Loopback Port: System call \"devmem 0x02090404 32 2\"\n"
                                       "Loopback Port: System call \"devmem 0x02090410 32 0x00000030\"\n"
                                       "Loopback Port: System call \"devmem 0x02090404 32 0\"\n"
                                       "Loopback Port: Success\n"}));
}

TEST_F(LoopbackPortActionTest, PrintsItsHelp) {
    EXPECT_EQ(action.getKeyword(), "loopbackport");
    EXPECT_EQ(printedBy([&] { action.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = actionHelp("loopbackport", "<>", "/bin/k")}));
}
