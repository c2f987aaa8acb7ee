#include <string>

#include <gtest/gtest.h>

#include "DumpPeer.hpp"
#include "MmiPeer.hpp"
#include "NetfpMasterPeer.hpp"
#include "PeerCatalog.hpp"
#include "PeerFaults.hpp"
#include "UsageError.hpp"

using Boardsim::faultFor;
using Boardsim::FaultGroup;
using Boardsim::FaultKind;
using Boardsim::findPeer;
using Boardsim::parsePeerFault;
using Boardsim::peerCatalog;
using Boardsim::PeerEntry;
using Boardsim::PeerFault;
using Boardsim::peerFaultTexts;
using Boardsim::Scenario;
using Boardsim::UsageError;

namespace {

std::string complaintAbout(const std::string& text) {
    try {
        parsePeerFault(text);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "none";
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

}  // namespace

TEST(FaultTest, IsParsedFromPeerKindAndNumber) {
    const PeerFault fault = parsePeerFault("netfp_master=error:-5");

    EXPECT_EQ(fault.peer, "netfp_master");
    EXPECT_EQ(fault.fault.kind, "error");
    EXPECT_EQ(fault.fault.number, -5);
}

TEST(FaultTest, IsRefusedWithTheReason) {
    const struct {
        const char* text;
        const char* complaint;
    } cases[] = {
        {"netfp_master", "not PEER=FAULT: 'netfp_master'"},
        {"=silent", "unknown peer: ''"},
        {"netfp=silent", "unknown peer: 'netfp'"},
        {"netfp_master=", "netfp_master has no fault ''"},
        {"netfp_master=unended", "netfp_master has no fault 'unended'"},
        {"system_log=silent", "system_log has no fault 'silent'"},
        {"netfp_proxy=sequence", "netfp_proxy has no fault 'sequence'"},
        {"netfp_proxy=netlink-short", "netfp_proxy has no fault 'netlink-short'"},
        {"netfp_master=netlink-silent", "netfp_master has no fault 'netlink-silent'"},
        {"iwf_dispatcher=netlink-unended", "iwf_dispatcher has no fault 'netlink-unended'"},
        {"netfp_proxy=dump-silent", "netfp_proxy has no fault 'dump-silent'"},
        {"netfp_master=silent:1", "fault 'silent' takes no number"},
        {"netfp_master=truncated", "fault 'truncated' takes a number from 0 to 272: truncated:N"},
        {"netfp_master=truncated:273", "fault 'truncated' takes a number from 0 to 272: truncated:N"},
        {"netfp_master=refuse-rename",
         "fault 'refuse-rename' takes a number from 1 to 2147483647: refuse-rename:N"},
        {"netfp_master=refuse-rename:0",
         "fault 'refuse-rename' takes a number from 1 to 2147483647: refuse-rename:N"},
        {"netfp_master=ignore-renames:1", "fault 'ignore-renames' takes no number"},
        {"netfp_master=dump-ignore-renames", "netfp_master has no fault 'dump-ignore-renames'"},
        {"netfp_proxy=refuse-rename:1", "netfp_proxy has no fault 'refuse-rename'"},
        {"netfp_proxy=netlink-stale:1", "fault 'netlink-stale' takes no number"},
        {"netfp_proxy=netlink-truncated:25",
         "fault 'netlink-truncated' takes a number from 1 to 24: netlink-truncated:N"},
        {"netfp_master=slow:1s", "fault 'slow' takes a number from 0 to 600000: slow:N"},
    };
    for (const auto& [text, complaint] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(firstLine(complaintAbout(text)), complaint);
    }
}

TEST(FaultTest, IsRefusedWithTheFaultsThatThePeerHas) {
    const std::string faults = "\nvalid faults: silent, slow:MS, dying, unended, short";
    const std::string netlinkFaults =
        ", netlink-silent, netlink-slow:MS, netlink-error:STATUS, netlink-stale, netlink-sequence, "
        "netlink-type, netlink-port, netlink-truncated:BYTES, netlink-oversized, netlink-dying";

    EXPECT_EQ(complaintAbout("netfp_server=silnt"), "netfp_server has no fault 'silnt'" + faults);
    EXPECT_EQ(complaintAbout("netfp_proxy=silnt"),
              "netfp_proxy has no fault 'silnt'" + faults + netlinkFaults);
    EXPECT_EQ(complaintAbout("netfp_server"), "not PEER=FAULT: 'netfp_server'" + faults);
}

TEST(FaultTest, IsRefusedWithThePeersThatHaveFaults) {
    const std::string peers =
        "\npeers with faults: netfp_master, netfp_proxy, netfp_server, resmgr_server, iwf_dispatcher, "
        "sfn_dispatcher";

    EXPECT_EQ(complaintAbout("nosuch"), "not PEER=FAULT: 'nosuch'" + peers);
    EXPECT_EQ(complaintAbout("nosuch=silent"), "unknown peer: 'nosuch'" + peers);
    EXPECT_EQ(complaintAbout("system_log=silent"), "system_log has no fault 'silent'" + peers);
    EXPECT_EQ(complaintAbout("system_log"), "not PEER=FAULT: 'system_log'" + peers);
}

TEST(FaultTest, IsWrittenAsItIsParsed) {
    std::vector<std::string> texts;
    for (const PeerEntry& peer : peerCatalog()) {
        for (const FaultGroup& group : peer.faults) {
            for (const FaultKind& kind : group.kinds()) {
                texts.push_back(std::string(peer.name) + "=" + std::string(group.prefix) +
                                std::string(kind.name) +
                                (kind.takesNumber() ? ":" + std::to_string(kind.most) : ""));
            }
        }
    }
    std::vector<PeerFault> faults;
    faults.reserve(texts.size());
    for (const std::string& text : texts) {
        faults.push_back(parsePeerFault(text));
    }

    EXPECT_EQ(peerFaultTexts(faults), texts);
}

TEST(FaultTest, OverridesAnEarlierFaultOfTheSameTable) {
    Scenario scenario;
    for (const char* text : {"netfp_master=silent", "netfp_master=dump-slow:3", "netfp_master=slow:7"}) {
        scenario.faults.push_back(parsePeerFault(text));
    }
    const PeerEntry& master = *findPeer("netfp_master");

    EXPECT_EQ(faultFor(scenario, "netfp_master", master.faults[0]).kind, "slow");
    EXPECT_EQ(faultFor(scenario, "netfp_master", master.faults[0]).number, 7);
    EXPECT_EQ(faultFor(scenario, "netfp_master", master.faults[1]).kind, "slow");
    EXPECT_EQ(faultFor(scenario, "netfp_master", master.faults[1]).number, 3);
    EXPECT_EQ(faultFor(scenario, "netfp_proxy", findPeer("netfp_proxy")->faults[0]).kind, "");
}

TEST(FaultTest, IsANetlinkFaultOnlyAfterItsPrefix) {
    for (const char* peer : {"netfp_proxy", "iwf_dispatcher", "sfn_dispatcher"}) {
        SCOPED_TRACE(peer);
        const Scenario scenario{.faults = {parsePeerFault(std::string(peer) + "=netlink-error:3")}};
        const PeerEntry& entry = *findPeer(peer);

        EXPECT_EQ(faultFor(scenario, peer, entry.faults[0]).kind, "");
        EXPECT_EQ(faultFor(scenario, peer, entry.faults[1]).kind, "error");
        EXPECT_EQ(faultFor(scenario, peer, entry.faults[1]).number, 3);
    }
}
