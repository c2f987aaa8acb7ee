#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Injection.hpp"
#include "LogEntries.hpp"
#include "NetlinkWire.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"
#include "VerboseText.hpp"
#include "WireNumber.hpp"

using Boardsim::Board;
using Boardsim::parsePeerFault;
using Boardsim::Scenario;

namespace {

Outcome successOf(const std::string& name) {
    return {.status = 0, .out = "AddInterface " + name + " successful\n", .err = ""};
}

/// `reason`: the text before the last line.
Outcome failureOf(const std::string& name, const std::string& reason = {}) {
    return {.status = 1,
            .out = reason + "AddInterface " + name + " failed. Check logs for more info.\n",
            .err = ""};
}

Outcome add(const std::string& name) {
    return korvel({"add_interface", name});
}

/// A board whose processes do not write to the shared-memory log.
const Scenario withoutDispatchers{.without = {"iwf_dispatcher", "sfn_dispatcher"}};

Scenario withProxyFault(const std::string& fault) {
    Scenario scenario = withoutDispatchers;
    scenario.faults = {parsePeerFault("netfp_proxy=" + fault)};
    return scenario;
}

/// The reports of the transport.
using Reports = std::vector<std::string>;
Reports reports() {
    return logEntries("dispatcher_log_memory");
}

const Reports timedOut{"0 NetlinkHelper: Timed out while waiting for netlink msg"};

/// The request of a program with this process id, as the proxy's record shows it.
std::string recordOf(pid_t program, const std::string& name) {
    constexpr std::uint32_t addInterfaceRequest = 23;
    std::string field = name;
    field.resize(32, '\0');
    std::string hex;
    for (const char each :
         netlinkMessage(0, static_cast<std::uint32_t>(program), littleEndian(addInterfaceRequest) + field)) {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(each);
        hex += {digits[byte / 16U], digits[byte % 16U]};
    }
    return hex;
}

/// The proxy's dump as the program prints it.
std::string proxyDump() {
    return korvel({"print", "proxy"}).out;
}

}  // namespace

TEST(AddInterface, MakesTheProxyManageTheInterface) {
    const Board board({});
    const std::string before = proxyDump();
    const std::string terminator = "</netfp_proxy_dump>\n";
    ASSERT_NE(before.find(terminator), std::string::npos);
    EXPECT_EQ(add("eth1"), successOf("eth1"));
    EXPECT_EQ(add("lte-backhaul.100"), successOf("lte-backhaul.100"));
    std::string expected = before;
    expected.insert(before.find(terminator), "managed interfaces:\n  eth1\n  lte-backhaul.100\n");
    EXPECT_EQ(proxyDump(), expected);
}

TEST(AddInterface, SendsOneRequestWithItsProcessId) {
    const Board board({});
    Process program({"korvel", "add_interface", "eth1"});
    const pid_t pid = program.pid();
    EXPECT_EQ(program.wait(), successOf("eth1"));
    EXPECT_EQ(Board::received("netfp_proxy"), std::vector{recordOf(pid, "eth1")});
}

TEST(AddInterface, AcceptsNamesOfUpTo31Characters) {
    const Board board({});
    const std::string longest(31, 'n');
    EXPECT_EQ(add(longest), successOf(longest));
    const Outcome invalid{.status = 1, .out = "Invalid interface name\n", .err = ""};
    EXPECT_EQ(add(longest + "n"), invalid);
    EXPECT_EQ(add(""), invalid);
    EXPECT_EQ(Board::received("netfp_proxy").size(), 1U);
}

TEST(AddInterface, NeedsExactlyOneName) {
    const Board board({});
    const Outcome refusal{.status = 1, .out = "Exactly one argument (interface name) required\n", .err = ""};
    EXPECT_EQ(korvel({"add_interface"}), refusal);
    EXPECT_EQ(korvel({"add_interface", "eth1", "eth2"}), refusal);
    EXPECT_EQ(Board::received("netfp_proxy"), std::vector<std::string>{});
}

TEST(AddInterface, PrintsOnlyTheExecutedActionInVerboseMode) {
    const Board board({});
    const std::string start = verboseEnabled + isolatedCpusRecord +
                              "Looking up Action keyword \"add_interface\"\n"
                              "Detected Action keywords.\n"
                              "Executing \"add_interface\" action\n";
    Outcome expected = successOf("eth1");
    expected.out.insert(0, start);
    EXPECT_EQ(korvel({"-v", "add_interface", "eth1"}), expected);
}

TEST(AddInterface, PrintsTheStatusThatTheProxyRefusesWith) {
    const Board board({});
    ASSERT_EQ(add("eth1"), successOf("eth1"));
    EXPECT_EQ(add("eth1"), failureOf("eth1", "Operation unsuccessful, status reported: 1\n"));
}

TEST(AddInterface, PrintsAnErrorOfTheProxy) {
    const Board board(withProxyFault("netlink-error:2147483647"));
    EXPECT_EQ(add("eth1"), failureOf("eth1", "Operation unsuccessful, status reported: 2147483647\n"));
    EXPECT_EQ(reports(), Reports{});
}

TEST(AddInterface, PrintsAWrongTypeOfTheAnswer) {
    const Board board(withProxyFault("netlink-type"));
    EXPECT_EQ(add("eth1"), failureOf("eth1", "Netlink communication error, wrong message type: 1024\n"));
    EXPECT_EQ(reports(), Reports{});
}

TEST(AddInterface, GivesUpOnASilentProxy) {
    const Board board(withProxyFault("netlink-silent"));
    EXPECT_EQ(add("eth1"), failureOf("eth1"));
    EXPECT_EQ(reports(), timedOut);
}

TEST(AddInterface, GivesUpOnAProxyThatAnswersTooLate) {
    const Board board(withProxyFault("netlink-slow:600000"));
    EXPECT_EQ(add("eth1"), failureOf("eth1"));
    EXPECT_EQ(reports(), timedOut);
}

TEST(AddInterface, GivesUpOnAProxyThatDies) {
    const Board board(withProxyFault("netlink-dying"));
    EXPECT_EQ(add("eth1"), failureOf("eth1"));
    EXPECT_EQ(reports(), timedOut);
    EXPECT_EQ(add("eth1"), failureOf("eth1"));
    EXPECT_EQ(reports().back(), "0 NetlinkHelper: Error while sending netling message: Connection refused");
}

TEST(AddInterface, WaitsForASlowProxy) {
    const Board board(withProxyFault("netlink-slow:300"));
    EXPECT_EQ(add("eth1"), successOf("eth1"));
}

TEST(AddInterface, ReportsAShortAnswerOnlyInTheLog) {
    const struct {
        int size;
        std::string report;
    } cases[] = {
        {10, "Packet received from netlink is too small"},
        {16, "Wrong received message size: 0, expected: 8"},
        {23, "Wrong received message size: 7, expected: 8"},
    };
    Reports expected;
    for (const auto& [size, report] : cases) {
        const Board board(withProxyFault("netlink-truncated:" + std::to_string(size)));
        EXPECT_EQ(add("eth1"), failureOf("eth1"));
        expected.push_back("0 NetlinkHelper: " + report);
    }
    EXPECT_EQ(reports(), expected);
}

TEST(AddInterface, ChecksNothingElseInAnAnswer) {
    for (const std::string fault :
         {"netlink-stale", "netlink-sequence", "netlink-port", "netlink-oversized"}) {
        SCOPED_TRACE(fault);
        const Board board(withProxyFault(fault));
        EXPECT_EQ(add("eth1"), successOf("eth1"));
        EXPECT_EQ(reports(), Reports{});
    }
}

TEST(AddInterface, ReportsAMissingProxyOnlyInTheLog) {
    Scenario scenario = withoutDispatchers;
    scenario.without.insert("netfp_proxy");
    const Board board(scenario);
    EXPECT_EQ(add("eth1"), failureOf("eth1"));
    EXPECT_EQ(reports(), Reports{"0 NetlinkHelper: Error while sending netling message: Connection refused"});
}

TEST(AddInterface, ReportsAFailedSystemCallOnlyInTheLog) {
    const Board board(withoutDispatchers);
    const struct {
        std::string fault;
        std::string report;
    } cases[] = {
        {"socket:error=EMFILE", "Error while creating netlink socket: Too many open files"},
        {"bind:error=EADDRINUSE", "Error while binding netlink socket: Address already in use"},
        {"poll,ppoll:error=ENOMEM", "poll() error: Cannot allocate memory"},
        {"recvfrom:error=EIO", "recv() error: Input/output error"},
        {"recvfrom:retval=0", "Connection closed unexpectedly"},
    };
    Reports expected;
    for (const auto& [fault, report] : cases) {
        SCOPED_TRACE(fault);
        EXPECT_EQ(runInjected({.faults = {fault}}, {"korvel", "add_interface", "eth1"}), failureOf("eth1"));
        expected.push_back("0 NetlinkHelper: " + report);
    }
    EXPECT_EQ(reports(), expected);
}

TEST(AddInterface, AddsTheInterfaceAndFailsIfItsOutputIsLost) {
    const Board board({});
    const Outcome lost{
        .status = 1, .out = "", .err = "Error while writing standard output: No space left on device\n"};
    EXPECT_EQ(korvel({"add_interface", "eth1"}, {.standardOutput = "/dev/full"}), lost);
    EXPECT_EQ(add("eth1"), failureOf("eth1", "Operation unsuccessful, status reported: 1\n"));
}
