#include <filesystem>

#include "CollectionFixture.hpp"
#include "MmiReply.hpp"
#include "OccupiedPort.hpp"

using Boardsim::mmiDatagrams;
using Boardsim::mmiReplyText;

namespace {

/// The number of bytes that are read of a datagram.
constexpr std::size_t bufferSize = 513;

/// How the MMI collector handles faulty dispatchers.
class MmiCollectionTest : public CollectionFixture {
protected:
    /// The content of the reply files.
    static Files replies() {
        Files files = workFiles();
        std::erase_if(files, [](const auto& file) { return !file.first.starts_with("mmi/"); });
        return files;
    }

    /// The first datagram of a reply.
    static std::string firstPart(const std::string& command) {
        return mmiDatagrams(mmiReplyText("iwf", command)).front();
    }

    /// The files of an instance whose replies all have the same fault.
    static Files iwfFiles(const Words& commands, std::string (*reply)(const std::string& command)) {
        Files files;
        for (const std::string& command : commands) {
            files["mmi/iwf/" + command + ".log"] = reply(command);
        }
        return files;
    }
};

TEST_F(MmiCollectionTest, AReplyInSeveralDatagramsIsStoredAsTheirConcatenationWithoutTheMarker) {
    startBoard();
    ASSERT_GT(mmiDatagrams(mmiReplyText("iwf", "SocketSvcInfo")).size(), std::size_t{1});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(replies(), replyFiles("iwf", infoCommands));
}

TEST_F(MmiCollectionTest, WaitsForASlowDispatcherBetweenDatagrams) {
    startBoardWithFaults({"iwf_dispatcher=slow:100"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dall"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(replies(), replyFiles("iwf", allCommands));
}

TEST_F(MmiCollectionTest, ASilentDispatcherLeavesEmptyFilesAndNothingToPrint) {
    startBoardWithFaults({"iwf_dispatcher=silent"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "print", "dinf", "dstat"});

    EXPECT_EQ(outcome, success(printedStates("iwf", allStates), lines(4, timedOut)));
    EXPECT_EQ(replies(), emptyReplyFiles("iwf", allCommands));
    EXPECT_EQ(requestsTo("iwf_dispatcher"), allCommands);
}

TEST_F(MmiCollectionTest, WithNoDispatcherListeningEachCommandTimesOutAndLeavesAnEmptyFile) {
    startBoardWithout({"iwf_dispatcher"});

    const Outcome outcome = collect({"-d", "iwf", "print", "dump", "dstat", "dinf"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, section("Tracing Enabled", "") + section("Dispatcher CPU", "") +
                               section("Dma Service Statistics", ""));
    EXPECT_EQ(outcome.err,
              "Error while opening /tmp/fuse/iwf/tracing_on\n"
              "Error while opening /tmp/fuse/iwf/dispatcherCpu\n"
              "Error while opening /tmp/fuse/iwf/dmaStats\n" +
                  lines(4, timedOut) +
                  "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n"
                  "Output of /tmp/korvel/fuse/iwf/dispatcherCpu.log is empty\n"
                  "Output of /tmp/korvel/fuse/iwf/dmaStats.log is empty\n");
    EXPECT_EQ(replies(), emptyReplyFiles("iwf", allCommands));
}

TEST_F(MmiCollectionTest, TheTextOfADyingDispatcherIsKept) {
    startBoardWithFaults({"iwf_dispatcher=dying"});

    const Outcome outcome = collect({"-d", "all", "dump", "print", "dinf", "dstat"});

    EXPECT_EQ(outcome, success(printedStates("iwf", allStates) + printedStates("sfn", allStates) +
                                   section("iwf Socket Service Info", firstPart("SocketSvcInfo")) +
                                   printedReplies("sfn", allCommands),
                               lines(4, timedOut)));
    EXPECT_EQ(replies(), together({{{"mmi/iwf/SocketSvcInfo.log", firstPart("SocketSvcInfo")}},
                                   emptyReplyFiles("iwf", statsCommands),
                                   replyFiles("sfn", allCommands)}));
}

TEST_F(MmiCollectionTest, ADatagramThatFillsTheBufferIsReadCompletely) {
    startBoardWithFaults({"iwf_dispatcher=unended"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(outcome, success("", lines(3, timedOut)));
    EXPECT_EQ(replies(), iwfFiles(statsCommands, [](const std::string& command) {
                  std::string text = mmiReplyText("iwf", command);
                  text.resize((text.size() + bufferSize - 1) / bufferSize * bufferSize, '.');
                  return text;
              }));
}

TEST_F(MmiCollectionTest, EveryByteExceptZeroReachesFileAndConsoleUnchanged) {
    startBoardWithFaults({"iwf_dispatcher=binary"});
    std::string bytes;
    for (int byte = 1; byte <= 255; ++byte) {
        bytes += static_cast<char>(byte);
    }
    const std::string reply = bytes + "\n\n" + bytes + "\n";

    const Outcome outcome = collect({"-d", "iwf", "dump", "print", "dinf"});

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + section("iwf Socket Service Info", reply)));
    EXPECT_EQ(replies(), (Files{{"mmi/iwf/SocketSvcInfo.log", reply}}));
}

TEST_F(MmiCollectionTest, AMarkerAfterTextInOneDatagramDoesNotEndTheReply) {
    startBoardWithFaults({"iwf_dispatcher=joined"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(outcome, success("", lines(3, timedOut)));
    EXPECT_EQ(replies(), iwfFiles(statsCommands, [](const std::string& command) {
                  return (firstPart(command) + "<MMI_END_OF_MSG>").substr(0, bufferSize);
              }));
}

TEST_F(MmiCollectionTest, AnEmptyDatagramEndsTheReply) {
    startBoardWithFaults({"iwf_dispatcher=empty"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(outcome, success("", lines(3, "recv(): Peer has performed an orderly shutdown")));
    EXPECT_EQ(replies(), iwfFiles(statsCommands, firstPart));
}

TEST_F(MmiCollectionTest, ADatagramOfAnEarlierCommandBecomesPartOfTheReply) {
    startBoardWithFaults({"iwf_dispatcher=stale"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(replies(), iwfFiles(statsCommands, [](const std::string& command) {
                  return "left over from an earlier command\n" + mmiReplyText("iwf", command);
              }));
}

TEST_F(MmiCollectionTest, AnInstanceWhosePortIsTakenIsSkippedWithAllLaterOnes) {
    startBoard();
    const OccupiedPort port(7778);

    const Outcome outcome = collect({"-v", "-d", "all", "dump", "dstat"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, verboseStart("Communicating with both dispatchers\n", {"ti"}) +
                               "Starting log collection from fuse file system...\n"
                               "Reading /tmp/fuse/iwf/dispatcherCpu...\n"
                               "Reading /tmp/fuse/iwf/dmaStats...\n"
                               "Reading /tmp/fuse/sfn/dispatcherCpu...\n"
                               "Reading /tmp/fuse/sfn/dmaStats...\n"
                               "Starting log collection from MMI service in dispatcher instance iwf...\n"
                               "Binding to port: 7778\n");
    EXPECT_EQ(outcome.err, "Error while binding socket, errno: Address already in use\n");
    EXPECT_EQ(replies(),
              together({emptyReplyFiles("iwf", statsCommands), emptyReplyFiles("sfn", statsCommands)}));
    EXPECT_EQ(requestsTo("iwf_dispatcher"), Words{});
    EXPECT_EQ(requestsTo("sfn_dispatcher"), Words{});
}

TEST_F(MmiCollectionTest, APortThatIsTakenDoesNotAffectTheInstanceBefore) {
    startBoard();
    const OccupiedPort port(8778);

    const Outcome outcome = collect({"-d", "all", "dump", "dstat"});

    EXPECT_EQ(outcome, success("", "Error while binding socket, errno: Address already in use\n"));
    EXPECT_EQ(replies(), together({replyFiles("iwf", statsCommands), emptyReplyFiles("sfn", statsCommands)}));
}

}  // namespace
