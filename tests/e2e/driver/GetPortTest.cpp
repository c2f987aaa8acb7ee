#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Injection.hpp"
#include "MasterRecord.hpp"
#include "Outcomes.hpp"
#include "PeerFaults.hpp"
#include "Process.hpp"
#include "VerboseText.hpp"

using Boardsim::Board;

namespace {

/// The request for the port of `name`, as the master's record shows it.
std::string portRequest(const std::string& name) {
    std::string hex = "04000000";  // the message type
    const std::string digits = "0123456789abcdef";
    for (std::size_t i = 0; i < 140; ++i) {
        const auto byte = static_cast<unsigned char>(i < name.size() && i < 32 ? name[i] : '\0');
        hex += {digits[byte / 16U], digits[byte % 16U]};
    }
    return hex;
}

const std::string verboseChannel =
    "Creating Socket for Client\n"
    "Binding to Client Socket \"/tmp/Korvel\"\n";

std::string verboseStart(const std::string& argument) {
    return verboseEnabled + isolatedCpusRecord +
           "Looking up Action keyword \"getport\"\n"
           "Detected Action keywords.\n"
           "Executing \"getport\" action\n"
           "Get Port Entry\n"
           "Get Port: Retrieving port number for \"" +
           argument + "\"\n";
}

/// The identifier of the request differs in each run.
std::string withoutIdentifier(const std::string& out) {
    return std::regex_replace(out, std::regex("response ID: [0-9]+"), "response ID: NUMBER");
}

void expectOutcome(const Outcome& outcome, const std::string& out, const std::string& err, int status = 0) {
    EXPECT_EQ(withoutIdentifier(outcome.out), out);
    EXPECT_EQ(outcome.err, err);
    EXPECT_EQ(outcome.status, status);
}

}  // namespace

TEST(GetPort, PrintsThePortOfAnInterface) {
    const Board board({});
    expectOutcome(korvel({"getport", "eth2"}), "3\n", "");
    EXPECT_EQ(receivedByMaster(), std::vector{portRequest("eth2")});
}

TEST(GetPort, PrintsEachStepInVerboseMode) {
    const Board board({});
    expectOutcome(korvel({"-v", "getport", "eth2"}),
                  verboseStart("eth2") + verboseChannel +
                      "Sending get interface request for \"eth2\"\n"
                      "Received response ID: NUMBER, Error Code: 0\n"
                      "Receive Success Response.  Port Number: 3\n"
                      "Client Socket closed\n"
                      "3\n",
                  "");
}

TEST(GetPort, PrintsAPortNumberWithoutARequestToTheMaster) {
    const Board board({});
    expectOutcome(korvel({"getport", "4"}), "4\n", "");
    expectOutcome(korvel({"getport", " +2x"}), "2\n", "");
    EXPECT_EQ(receivedByMaster(), std::vector<std::string>{});
}

TEST(GetPort, ReportsNumbersThatAreNoPort) {
    const Board board({});
    expectOutcome(korvel({"getport", "0"}), "", "Get Port: Invalid port number \"0\"\n");
    expectOutcome(korvel({"getport", "7"}), "", "Get Port: Invalid port number \"7\"\n");
    EXPECT_EQ(receivedByMaster(), std::vector<std::string>{});
}

TEST(GetPort, TreatsANegativeNumberAsAnInterfaceName) {
    const Board board({});
    expectOutcome(korvel({"getport", "-1"}), "",
                  "Response from Server was not successful.\n"
                  "Get Port: Invalid port number \"-1\"\n");
    EXPECT_EQ(receivedByMaster(), std::vector{portRequest("-1")});
}

TEST(GetPort, RefusesNumbersBeyond32Bits) {
    for (const std::string argument : {"2147483648", "-2147483649", "99999999999999999999"}) {
        SCOPED_TRACE(argument);
        expectOutcome(korvel({"getport", argument}), "",
                      "Get Port: Port number out of range \"" + argument + "\"\n", 1);
    }
}

TEST(GetPort, ReportsInVerboseModeThatANumberBeyond32BitsFailsTheRequest) {
    expectOutcome(korvel({"-v", "getport", "2147483648"}),
                  verboseStart("2147483648") + "Action Failed to process the request.\n",
                  "Get Port: Port number out of range \"2147483648\"\n", 1);
}

TEST(GetPort, NeedsAnArgument) {
    expectOutcome(korvel({"getport"}), "", "Get Port: Not enough arguments\n", 1);
}

TEST(GetPort, IgnoresFurtherArguments) {
    expectOutcome(korvel({"getport", "1", "eth1", "7"}), "1\n", "");
}

TEST(GetPort, SendsAtMost32BytesOfAName) {
    const Board board({});
    for (const std::size_t length : {31U, 32U, 33U, 4096U}) {
        SCOPED_TRACE(length);
        const std::string name(length, 'x');
        expectOutcome(korvel({"getport", name}), "",
                      "Response from Server was not successful.\n"
                      "Get Port: Invalid port number \"" +
                          name + "\"\n");
        EXPECT_EQ(receivedByMaster().back(), portRequest(name));
    }
}

TEST(GetPort, ReportsAMissingMaster) {
    expectOutcome(korvel({"getport", "eth1"}), "",
                  "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 2: No such file or directory\n"
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, ReportsAMasterThatHasExited) {
    { const Board board({}); }
    expectOutcome(korvel({"getport", "eth1"}), "",
                  "Failed to Send to Master Socket \"/tmp/NetfpMaster\": 111: Connection refused\n"
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, GivesUpSilentlyOnASilentMaster) {
    const Board board(withMasterFault("silent"));
    expectOutcome(korvel({"getport", "eth1"}), "", "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, GivesUpOnAMasterThatDies) {
    const Board board(withMasterFault("dying"));
    expectOutcome(korvel({"getport", "eth1"}), "", "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, ReportsAnErrorOfTheMaster) {
    const Board board(withMasterFault("error:-22"));
    expectOutcome(korvel({"-v", "getport", "eth1"}),
                  verboseStart("eth1") + verboseChannel +
                      "Sending get interface request for \"eth1\"\n"
                      "Received response ID: NUMBER, Error Code: -22\n"
                      "Client Socket closed\n",
                  "Response from Server was not successful.\n"
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, SkipsAStaleAnswer) {
    const Board board(withMasterFault("stale"));
    expectOutcome(korvel({"getport", "eth1"}), "2\n", "");
}

TEST(GetPort, SkipsAnswersThatAreTooShortForAPort) {
    const Board board(withMasterFault("truncated:19"));
    expectOutcome(korvel({"-v", "getport", "eth1"}),
                  verboseStart("eth1") + verboseChannel +
                      "Sending get interface request for \"eth1\"\n"
                      "Client Socket closed\n",
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, AcceptsAnAnswerThatEndsAfterThePort) {
    const Board board(withMasterFault("truncated:20"));
    expectOutcome(korvel({"getport", "eth1"}), "2\n", "");
}

TEST(GetPort, AcceptsAnAnswerThatIsTooLong) {
    const Board board(withMasterFault("oversized"));
    expectOutcome(korvel({"getport", "eth1"}), "2\n", "");
}

TEST(GetPort, WaitsForASlowMaster) {
    const Board board(withMasterFault("slow:300"));
    expectOutcome(korvel({"getport", "eth1"}), "2\n", "");
}

TEST(GetPort, GivesUpInTimeIfAnnouncedDatagramsAreMissing) {
    const Board board(withMasterFault("slow:10000"));
    expectOutcome(runInjected({.faults = {"poll,ppoll:retval=1"}}, {"korvel", "getport", "eth1"}), "",
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, GivesUpInTimeDespiteManyStaleAnswers) {
    const Board board(withMasterFault("silent"));
    const Injection staleAnswers{.faults = {"poll,ppoll:retval=1", "recvfrom:retval=272"}};  // of zeros
    expectOutcome(runInjected(staleAnswers, {"korvel", "getport", "eth1"}), "",
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, UsesThePathsOfTheOptions) {
    const Board board({});
    run({"mv", "/tmp/NetfpMaster", "/tmp/elsewhere"});
    expectOutcome(korvel({"-c", "/tmp/client", "-m", "/tmp/elsewhere", "getport", "eth1"}), "2\n", "");
    EXPECT_EQ(run({"test", "-S", "/tmp/client"}).status, 0);
}

TEST(GetPort, RefusesSocketPathsThatDoNotFit) {
    const Board board({});
    const std::string fits = "/tmp/" + std::string(102, 'p');
    const std::string tooLong = fits + "p";
    expectOutcome(korvel({"-c", fits, "getport", "eth1"}), "2\n", "");
    expectOutcome(korvel({"-c", tooLong, "getport", "eth1"}), "",
                  "Failed to Bind to Client Socket: 36: File name too long\n"
                  "Get Port: Invalid port number \"eth1\"\n");
    expectOutcome(korvel({"-m", tooLong, "getport", "eth1"}), "",
                  "Failed to Send to Master Socket \"" + tooLong +
                      "\": 36: File name too long\n"
                      "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, ReportsAClientSocketThatCannotBeOpened) {
    expectOutcome(korvel({"-c", "/nowhere/client", "getport", "eth1"}), "",
                  "Failed to Bind to Client Socket: 2: No such file or directory\n"
                  "Get Port: Invalid port number \"eth1\"\n");
    expectOutcome(runInjected({.faults = {"socket:error=EMFILE"}}, {"korvel", "getport", "eth1"}), "",
                  "Client Socket Creation Failed: 24: Too many open files\n"
                  "Get Port: Invalid port number \"eth1\"\n");
}

TEST(GetPort, ReportsAReceiveThatFails) {
    const Board board({});
    expectOutcome(runInjected({.faults = {"recvfrom:error=EIO"}}, {"korvel", "getport", "eth1"}), "",
                  "Failed to receive from Linux Socket: 5: Input/output error\n"
                  "Get Port: Invalid port number \"eth1\"\n");
}
