#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "MasterRecord.hpp"
#include "Outcomes.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"

using Boardsim::Board;
using Boardsim::parsePeerFault;

namespace {

/// The part of the NetFP master's dump about mirroring.
std::string mirroring() {
    const std::string dump = korvel({"print", "master"}).out;
    const std::string title = "mirroring:\n";
    const std::size_t start = dump.find(title) + title.size();
    return dump.substr(start, dump.find("</netfp_master_dump>") - start);
}

/// A set-port-mirroring request as the master's record shows it.
std::string record(const std::string& enable, const std::string& direction, const std::string& ports) {
    return "0e000000" + enable + "000000" + direction + "000000" + ports + std::string(260, '0');
}

}  // namespace

TEST(MirrorPort, MirrorsBothDirectionsUntilItIsDisabled) {
    const Board board({});

    EXPECT_EQ(korvel({"mirrorport", "enable", "eth0", "eth1"}), quietSuccess);
    EXPECT_EQ(mirroring(), "  inbound port 1 to port 2\n  outbound port 1 to port 2\n");

    EXPECT_EQ(korvel({"mirrorport", "disable", "eth0", "eth1"}), quietSuccess);
    EXPECT_EQ(mirroring(), "");
}

TEST(MirrorPort, SendsOneRequestForEachDirection) {
    const Board board({});

    EXPECT_EQ(korvel({"mirrorport", "e", "2", "4"}), quietSuccess);

    EXPECT_EQ(receivedByMaster(), (std::vector{record("01", "01", "0204"), record("01", "02", "0204")}));
}

TEST(MirrorPort, SucceedsIfTheMasterRefuses) {
    const Board board({});

    EXPECT_EQ(korvel({"mirrorport", "enable", "1", "9"}),
              (Outcome{.status = 0, .out = "", .err = "Response from Server was not successful.\n"}));
    EXPECT_EQ(mirroring(), "");
}

TEST(MirrorPort, SucceedsSilentlyIfTheMasterIsSilent) {
    const Board board({.faults = {parsePeerFault("netfp_master=silent")}});

    EXPECT_EQ(korvel({"mirrorport", "enable", "1", "2"}), quietSuccess);
    EXPECT_EQ(receivedByMaster(), std::vector{record("01", "01", "0102")});
}

TEST(MirrorPort, FailsIfTheCommandLineIsWrong) {
    EXPECT_EQ(korvel({"mirrorport", "enable", "5", "1"}),
              (Outcome{.status = 1, .out = "", .err = "Port Mirroring: Invalid 'from' port number \n"}));
    EXPECT_EQ(korvel({"mirrorport", "on", "1", "2"}),
              (Outcome{.status = 1, .out = "", .err = "Port Mirroring: Could not find enable/disable\n"}));
}
