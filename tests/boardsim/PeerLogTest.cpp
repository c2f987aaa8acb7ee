// The peers' logs for people: a line for each request and its result.

#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "DatagramClient.hpp"
#include "DumpPeer.hpp"
#include "FastPathNetlink.hpp"
#include "MmiPeer.hpp"
#include "NetfpMaster.hpp"
#include "NetfpMasterPeer.hpp"
#include "NetfpMasterWire.hpp"
#include "NetlinkWire.hpp"
#include "PeerCatalog.hpp"
#include "PeerFaults.hpp"
#include "PeerLog.hpp"
#include "PeerLogContent.hpp"
#include "QosStatistics.hpp"
#include "SystemLogPeer.hpp"
#include "TestFiles.hpp"
#include "Traffics.hpp"
#include "WireNumber.hpp"

using Boardsim::DumpPeer;
using Boardsim::Fault;
using Boardsim::faultFor;
using Boardsim::FaultGroup;
using Boardsim::findPeer;
using Boardsim::InterfaceTable;
using Boardsim::MmiPeer;
using Boardsim::NetfpMasterPeer;
using Boardsim::parsePeerFault;
using Boardsim::parsePeerLog;
using Boardsim::Peer;
using Boardsim::PeerDeath;
using Boardsim::PeerLog;
using Boardsim::PeerLogContent;
using Boardsim::peerLogStampLength;
using Boardsim::Peers;
using Boardsim::QosStatistics;
using Boardsim::Scenario;
using Boardsim::SystemLogPeer;

namespace {

using Lines = std::vector<std::string>;

/// The peer's log since construction, without the times.
Lines takeLog(std::string_view peer) {
    const std::string path = Boardsim::BoardPaths::logFile(peer);
    Lines lines = linesOfFile(path);
    for (std::string& line : lines) {
        line.erase(0, peerLogStampLength + 1);
    }
    ::unlink(path.c_str());
    return lines;
}

Fault faultOf(const std::string& peer, const std::string& words) {
    const Scenario scenario{.faults = {parsePeerFault(peer + "=" + words)}};
    for (const FaultGroup& group : findPeer(peer)->faults) {
        if (Fault fault = faultFor(scenario, peer, group); !fault.kind.empty()) {
            return fault;
        }
    }
    return {};
}

/// Serves all waiting requests. A peer may die meanwhile.
void serve(Peer& peer) {
    try {
        peer.serve();
    } catch (const PeerDeath&) {
        return;
    }
}

std::string padded(std::string text) {
    constexpr std::size_t field = 32;
    text.resize(field, '\0');
    return text;
}

/// The log of a master that gets one request.
Lines masterLog(const std::string& request, const Fault& fault = {}) {
    NetfpMasterPeer peer(std::make_shared<InterfaceTable>(), fault, "/tmp/master");
    const auto client = DatagramClient::ofPath("/tmp/master", "/tmp/client");
    client.send(request);
    serve(peer);
    return takeLog("netfp_master");
}

std::string portRequest() {
    return masterRequest(NETFP_MASTER_GET_SWITCH_PORT, 9, "eth1");
}

/// The log of an IWF dispatcher's MMI service that gets one command.
Lines mmiLog(const std::string& command, const Fault& fault = {}) {
    MmiPeer peer("iwf", 7777, noTraffic(), std::make_shared<QosStatistics>("iwf", noTraffic()), fault);
    const auto client = DatagramClient::ofPort(7777);
    client.send(command);
    serve(peer);
    return takeLog("iwf_dispatcher");
}

/// The log of a process that dumps "body" to /tmp.
Lines dumpLog(const Fault& fault = {}) {
    DumpPeer peer(
        "netfp_server", [] { return "body\n"; }, fault);
    ::kill(::getpid(), SIGUSR1);
    serve(peer);
    return takeLog("netfp_server");
}

/// The log of netfp_proxy, which gets one netlink message with the sequence number 7.
Lines proxyLog(const std::string& payload, const std::string& fault = "") {
    Scenario scenario;
    if (!fault.empty()) {
        scenario.faults = {parsePeerFault("netfp_proxy=" + fault)};
    }
    const Peers peers = findPeer("netfp_proxy")->build(scenario);
    const auto client = DatagramClient::ofNetlinkPort(FASTPATH_NETFP_PROXY_PORT_ID);
    client.send(netlinkMessage(7, static_cast<std::uint32_t>(::getpid()), payload));
    serve(*peers.back());
    return takeLog("netfp_proxy");
}

const std::string heartbeat = littleEndian(FASTPATH_NETFP_PROXY_HEARTBEAT_REQ);

}  // namespace

TEST(PeerLogTest, ShowsRequestsToTheMasterAndItsAnswers) {
    const std::string mac{'\x01', '\x00', '\x5e', '\x00', '\x00', '\x01'};
    const std::string filter =
        padded("region") + std::string("\x08\x06\x05\x00\0\0\0\0", 8) + std::string(6, '\0') + mac;
    const struct {
        std::string request;
        Lines lines;
    } cases[] = {
        {portRequest(),
         {"<- request 9: port of eth1 (148 bytes)", "-> request 9: port 2, error 0 (272 bytes)"}},
        {masterRequest(NETFP_MASTER_GET_SWITCH_PORT, 9, "eth\x1b"),
         {"<- request 9: port of eth\\x1b (148 bytes)", "-> request 9: error -1 (272 bytes)"}},
        {masterRequest(NETFP_MASTER_RENAME_INTERFACE, 9, padded("eth0") + "tmpN"),
         {"<- request 9: rename eth0 to tmpN (148 bytes)", "-> request 9: error 0 (272 bytes)"}},
        {masterRequest(NETFP_MASTER_SET_PORT_MIRRORING, 9, littleEndian(1) + littleEndian(1) + "\x01\x02"),
         {"<- request 9: mirroring of port 1 to port 2, inbound (148 bytes)",
          "-> request 9: error 0 (272 bytes)"}},
        {masterRequest(NETFP_MASTER_SET_PORT_MIRRORING, 9, littleEndian(0) + littleEndian(2) + "\x01\x02"),
         {"<- request 9: no mirroring of port 1 to port 2, outbound (148 bytes)",
          "-> request 9: error 0 (272 bytes)"}},
        {masterRequest(NETFP_MASTER_ADD_MULTICAST_MAC, 9, filter + "eth3"),
         {"<- request 9: multicast 01:00:5e:00:00:01 for eth3, VLAN 5 (148 bytes)",
          "-> request 9: error 0 (272 bytes)"}},
        {masterRequest(5, 9, ""),
         {"<- request 9: unknown type 5 (148 bytes)", "-> request 9: error -2 (272 bytes)"}},
        {"x", {"<- no request (1 byte)", "-> request 0: error -3 (272 bytes)"}},
    };
    for (const auto& [request, lines] : cases) {
        SCOPED_TRACE(lines[0]);
        EXPECT_EQ(masterLog(request), lines);
    }
}

TEST(PeerLogTest, NamesTheFaultOfTheMasterWhenItAppliesIt) {
    const struct {
        std::string fault;
        Lines behindTheRequest;
    } cases[] = {
        {"silent", {"-- no answer (fault silent)"}},
        {"dying", {"-- it dies (fault dying)"}},
        {"slow:1", {"-> request 9: port 2, error 0 (272 bytes, fault slow:1)"}},
        {"error:-7", {"-> request 9: port 2, error -7 (272 bytes, fault error:-7)"}},
        {"stale",
         {"-> request 8: port 2, error 0 (272 bytes, fault stale)",
          "-> request 9: port 2, error 0 (272 bytes, fault stale)"}},
        {"truncated:12", {"-> the beginning of an answer (12 bytes, fault truncated:12)"}},
        {"oversized", {"-> request 9: port 2, error 0 (400 bytes, fault oversized)"}},
    };
    for (const auto& [fault, behindTheRequest] : cases) {
        SCOPED_TRACE(fault);
        Lines expected{"<- request 9: port of eth1 (148 bytes)"};
        expected.insert(expected.end(), behindTheRequest.begin(), behindTheRequest.end());
        EXPECT_EQ(masterLog(portRequest(), faultOf("netfp_master", fault)), expected);
    }
}

TEST(PeerLogTest, ReportsThatNobodyReceivedTheAnswer) {
    NetfpMasterPeer peer(std::make_shared<InterfaceTable>(), {}, "/tmp/master");
    {
        const auto client = DatagramClient::ofPath("/tmp/master", "/tmp/client");
        client.send(portRequest());
    }

    peer.serve();

    const Lines expected{"<- request 9: port of eth1 (148 bytes)",
                         "-> request 9: port 2, error 0 (272 bytes)", "-- this was not taken"};
    EXPECT_EQ(takeLog("netfp_master"), expected);
}

TEST(PeerLogTest, ShowsNetlinkRequestsAndAnswers) {
    const struct {
        std::string payload;
        Lines lines;
    } cases[] = {
        {heartbeat,
         {"<- sequence 7: heartbeat (20 bytes)",
          "-> sequence 7: type 18, status 0, from port id 110 (24 bytes)"}},
        {littleEndian(FASTPATH_ADD_INTERFACE_REQ) + padded("eth4"),
         {"<- sequence 7: add interface eth4 (52 bytes)",
          "-> sequence 7: type 24, status 0, from port id 110 (24 bytes)"}},
        {littleEndian(99), {"<- no request that it knows (20 bytes)", "-- no answer"}},
        {"x", {"<- no request that it knows (17 bytes)", "-- no answer"}},
    };
    for (const auto& [payload, lines] : cases) {
        SCOPED_TRACE(lines[0]);
        EXPECT_EQ(proxyLog(payload), lines);
    }
}

TEST(PeerLogTest, ShowsWhatANetlinkFaultChanges) {
    const struct {
        std::string fault;
        std::string lastLine;
    } cases[] = {
        {"netlink-silent", "-- no answer (fault netlink-silent)"},
        {"netlink-error:5",
         "-> sequence 7: type 18, status 5, from port id 110 (24 bytes, fault netlink-error:5)"},
        {"netlink-sequence",
         "-> sequence 1007: type 18, status 0, from port id 110 (24 bytes, fault netlink-sequence)"},
        {"netlink-type",
         "-> sequence 7: type 1018, status 0, from port id 110 (24 bytes, fault netlink-type)"},
        {"netlink-port",
         "-> sequence 7: type 18, status 0, from port id 1110 (24 bytes, fault netlink-port)"},
        {"netlink-truncated:3",
         "-> sequence 7: type 18, status 0, from port id 110 (3 bytes, fault netlink-truncated:3)"},
    };
    for (const auto& [fault, lastLine] : cases) {
        const Lines expected{"<- sequence 7: heartbeat (20 bytes)", lastLine};
        EXPECT_EQ(proxyLog(heartbeat, fault), expected);
    }
}

TEST(PeerLogTest, ShowsAReplyOfTheMmiServiceInOneLine) {
    const struct {
        std::string fault;
        std::string lastLine;
    } cases[] = {
        {"slow:0", "-> reply of 3 datagrams (772 bytes, fault slow:0)"},
        {"joined", "-> reply of 1 datagram (527 bytes, fault joined)"},
        {"silent", "-- no reply (fault silent)"},
    };
    EXPECT_EQ(mmiLog("HeapStats"), (Lines{"<- HeapStats (9 bytes)", "-> reply of 3 datagrams (772 bytes)"}));
    for (const auto& [fault, lastLine] : cases) {
        EXPECT_EQ(mmiLog("HeapStats", faultOf("iwf_dispatcher", fault)),
                  (Lines{"<- HeapStats (9 bytes)", lastLine}));
    }
}

TEST(PeerLogTest, ShowsAReplyBeforeItsPeerDies) {
    EXPECT_EQ(mmiLog("HeapStats", faultOf("iwf_dispatcher", "dying")),
              (Lines{"<- HeapStats (9 bytes)", "-> reply of 1 datagram (511 bytes, fault dying)",
                     "-- it dies (fault dying)"}));
}

TEST(PeerLogTest, ShowsDumps) {
    EXPECT_EQ(dumpLog(), (Lines{"<- SIGUSR1", "-> dump in /tmp/netfp_server.log (46 bytes)"}));
    EXPECT_EQ(dumpLog(faultOf("netfp_server", "silent")), (Lines{"<- SIGUSR1", "-- no dump (fault silent)"}));
    EXPECT_EQ(dumpLog(faultOf("netfp_server", "short")),
              (Lines{"<- SIGUSR1", "-> dump in /tmp/netfp_server.log (41 bytes, fault short)"}));
}

TEST(PeerLogTest, ShowsRecordsOfTheSystemLog) {
    SystemLogPeer peer("/tmp/log", "/tmp/system.log");
    const auto client = DatagramClient::ofPath("/tmp/log", "/tmp/client");

    client.send("<13>a record\n");
    peer.serve();

    EXPECT_EQ(takeLog("system_log"), Lines{"<- <13>a record (13 bytes)"});
}

TEST(PeerLogTest, CutsTextThatIsTooLongForALine) {
    EXPECT_EQ(mmiLog(std::string(201, 'x')).front(), "<- " + std::string(200, 'x') + "... (201 bytes)");
}

TEST(PeerLogTest, NamesAFaultWithItsNumberAndPrefix) {
    const PeerLog log("netfp_master", faultOf("netfp_master", "dump-slow:5"));

    log.note("waits");

    EXPECT_EQ(takeLog("netfp_master"), Lines{"-- waits (fault dump-slow:5)"});
}

TEST(PeerLogTest, StaysSmallAndKeepsCount) {
    const PeerLog log("netfp_master");
    const std::string text(100, 'x');
    constexpr std::uint64_t rounds = 5000;
    for (std::uint64_t i = 0; i < rounds; ++i) {
        log.received(text);
        log.answered(text, 1);
    }

    const std::string kept = contentOfFile(Boardsim::BoardPaths::logFile("netfp_master"));
    const PeerLogContent content = parsePeerLog(kept);

    EXPECT_LT(kept.size(), (256U << 10) + 200);
    EXPECT_GT(kept.size(), 128U << 10);
    EXPECT_EQ(content.received, rounds);
    EXPECT_EQ(content.answered, rounds);
    EXPECT_EQ(content.dropped + content.lines.size(), 2 * rounds);
    EXPECT_EQ(content.lines.back().substr(peerLogStampLength + 1), "-> " + text + " (1 byte)");
}
