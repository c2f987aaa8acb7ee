#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Injection.hpp"
#include "Outcomes.hpp"
#include "Process.hpp"

using Boardsim::Board;

namespace {

using Lines = std::vector<std::string>;

std::string readRegister(const std::string& address) {
    return run({"devmem", address}).out;
}

}  // namespace

TEST(LoopbackPort, SetsTheRegistersOfTheInterfacesPort) {
    const Board board({});

    EXPECT_EQ(korvel({"loopbackport", "enable", "eth3"}), quietSuccess);

    EXPECT_EQ(Board::received("devmem"),
              (Lines{"devmem 0x02090510 32 0", "devmem 0x02090504 32 2", "devmem 0x02090510 32 0x00000030",
                     "devmem 0x02090504 32 0"}));
    EXPECT_EQ(readRegister("0x02090510"), "0x00000030\n");
    EXPECT_EQ(readRegister("0x02090504"), "0x00000000\n");
}

TEST(LoopbackPort, ClearsTheRegistersAgain) {
    const Board board({});
    korvel({"loopbackport", "enable", "4"});

    EXPECT_EQ(korvel({"loopbackport", "dis", "4"}), quietSuccess);

    EXPECT_EQ(readRegister("0x02090510"), "0x00000000\n");
}

TEST(LoopbackPort, WritesNoRegisterIfTheInterfaceIsUnknown) {
    const Board board({});

    EXPECT_EQ(korvel({"loopbackport", "enable", "eth9"}),
              (Outcome{.status = 1,
                       .out = "",
                       .err = "Response from Server was not successful.\n"
                              "Loopback Port: Invalid port number \"eth9\"\n"}));
    EXPECT_EQ(Board::received("devmem"), Lines{});
}

TEST(LoopbackPort, StopsAtTheFirstCommandThatCannotBeStarted) {
    const Board board({});

    // The first process that is started reads the kernel's command line.
    const Outcome outcome = runInjected({.faults = {"clone3:error=EAGAIN:when=4"}},
                                        {"korvel", "-v", "loopbackport", "enable", "eth3"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "Loopback Port: System call failed\n");
    EXPECT_TRUE(outcome.out.ends_with("System call \"devmem 0x02090510 32 0x00000030\"\n"));
    EXPECT_EQ(Board::received("devmem"), (Lines{"devmem 0x02090510 32 0", "devmem 0x02090504 32 2"}));
}
