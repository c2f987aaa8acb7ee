#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "MasterDump.hpp"
#include "MasterRecord.hpp"
#include "Outcomes.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;

namespace {

using Lines = std::vector<std::string>;

const std::string refused = "Response from Server was not successful.\n";

const std::string untouched = "  eth0 port 1\n  eth1 port 2\n  eth2 port 3\n  eth3 port 4\nmirroring:\n";

/// A name of at most 32 characters as the master's record shows it.
std::string field(const std::string& name) {
    const std::string digits = "0123456789abcdef";
    std::string hex;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        hex += {digits[byte / 16U], digits[byte % 16U]};
    }
    hex.resize(64, '0');
    return hex;
}

std::string lookUp(const std::string& name) {
    return "04000000" + field(name) + std::string(216, '0');
}

std::string renaming(const std::string& currentName, const std::string& newName) {
    return "06000000" + field(currentName) + field(newName) + std::string(152, '0');
}

}  // namespace

TEST(PortSwap, SwapsThePortsOfTwoInterfaces) {
    const Board board({});

    EXPECT_EQ(korvel({"portswap", "eth0", "eth3"}), quietSuccess);

    EXPECT_EQ(receivedByMaster(),
              (Lines{lookUp("eth0"), lookUp("eth3"), renaming("eth0", "tmpN"), renaming("eth3", "eth0"),
                     renaming("tmpN", "eth3"), lookUp("eth0"), lookUp("eth3")}));
    EXPECT_EQ(masterDump(), "  eth0 port 4\n  eth1 port 2\n  eth2 port 3\n  eth3 port 1\nmirroring:\n");
    EXPECT_EQ(korvel({"getport", "eth0"}).out, "4\n");
    EXPECT_EQ(korvel({"getport", "eth3"}).out, "1\n");
}

TEST(PortSwap, IsCompleteIfTheReaderOfItsOutputIsGone) {
    const Board board({});

    const Outcome outcome =
        run({"bash", "-c",
             "{ while [ ! -e /tmp/gone ]; do sleep 0.01; done;"
             " env --default-signal=PIPE korvel -v portswap eth0 eth1; echo $? > /tmp/status; }"
             " | { exec < /dev/null; touch /tmp/gone; }"});

    EXPECT_EQ(outcome.err, "Error while writing standard output: Broken pipe\n");
    EXPECT_EQ(contentOfFile("/tmp/status"), "1\n");
    EXPECT_EQ(masterDump(), "  eth0 port 2\n  eth1 port 1\n  eth2 port 3\n  eth3 port 4\nmirroring:\n");
}

TEST(PortSwap, IsUndoneByASecondSwap) {
    const Board board({});

    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}), quietSuccess);
    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}), quietSuccess);

    EXPECT_EQ(masterDump(), untouched);
}

TEST(PortSwap, RevertsItsRenamesIfOneIsRefused) {
    const struct {
        std::string fault;
        std::string message;
    } cases[] = {
        {"refuse-rename:1",
         "PortSwap : rename recv failed : (eth0,tmpN)\n"
         "PortSwap : swap failed : from eth0 to tmpN\n"},
        {"refuse-rename:2",
         "PortSwap : rename recv failed : (eth1,eth0)\n"
         "PortSwap : swap failed : from  eth1 to eth0\n"},
        {"refuse-rename:3",
         "PortSwap : rename recv failed : (tmpN,eth1)\n"
         "PortSwap : swap failed from tmpN to eth1\n"},
    };
    for (const auto& [fault, message] : cases) {
        SCOPED_TRACE(fault);
        const Board board(withMasterFault(fault));

        EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}),
                  failure(refused + message + "PortSwap : swap failed\n"));

        EXPECT_EQ(masterDump(), untouched);
    }
}

TEST(PortSwap, DetectsRenamesThatTheMasterOnlyReported) {
    const Board board(withMasterFault("ignore-renames"));

    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}), failure("PortSwap : swap failed: (1,2;1,2)\n"));
}

TEST(PortSwap, DoesNotSwapAnInterfaceWithItself) {
    const Board board({});

    EXPECT_EQ(korvel({"portswap", "eth0", "eth0"}),
              failure(refused + "PortSwap : rename recv failed : (eth0,eth0)\n"
                                "PortSwap : swap failed : from  eth0 to eth0\n"
                                "PortSwap : swap failed\n"));

    EXPECT_EQ(masterDump(), untouched);
}

TEST(PortSwap, RenamesNothingIfAnInterfaceIsUnknown) {
    const Board board({});

    EXPECT_EQ(korvel({"portswap", "eth0", "eth9"}),
              failure(refused + "PortSwap : can't get interface's port (1,-1)\n"));

    EXPECT_EQ(receivedByMaster(), (Lines{lookUp("eth0"), lookUp("eth9")}));
}

TEST(PortSwap, FailsWithoutTwoInterfaces) {
    const Board board({});

    EXPECT_EQ(korvel({"portswap", "eth0"}), failure("PortSwap : Not enough arguments\n"));
    EXPECT_EQ(receivedByMaster(), Lines{});
}

TEST(PortSwap, FailsIfTheMasterAnswersWithErrors) {
    const Board board(withMasterFault("error:7"));

    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}),
              failure(refused + refused + "PortSwap : can't get interface's port (-1,-1)\n"));
}

TEST(PortSwap, FailsIfTheMasterIsSilent) {
    const Board board(withMasterFault("silent"));

    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}),
              failure("PortSwap : can't get interface's port (-1,-1)\n"));
    EXPECT_EQ(receivedByMaster(), (Lines{lookUp("eth0"), lookUp("eth1")}));
}

TEST(PortSwap, FailsIfTheMasterDies) {
    const Board board(withMasterFault("dying"));

    EXPECT_EQ(korvel({"portswap", "eth0", "eth1"}),
              failure("Failed to Send to Master Socket \"/tmp/NetfpMaster\": 111: Connection refused\n"
                      "PortSwap : can't get interface's port (-1,-1)\n"));
}
