#include <cerrno>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "MmiPeer.hpp"
#include "MmiReply.hpp"
#include "PeerThread.hpp"
#include "QosStatistics.hpp"
#include "TestFiles.hpp"
#include "Traffics.hpp"

using Boardsim::Board;
using Boardsim::Fault;
using Boardsim::mmiDatagrams;
using Boardsim::mmiEndOfMessage;
using Boardsim::MmiPeer;
using Boardsim::mmiReplyText;
using Boardsim::PeerThread;
using Boardsim::QosStatistics;

namespace {

constexpr std::uint16_t port = 7777;
const std::string marker(mmiEndOfMessage);

std::unique_ptr<MmiPeer> peerWith(Fault fault) {
    return std::make_unique<MmiPeer>("iwf", port, noTraffic(),
                                     std::make_shared<QosStatistics>("iwf", noTraffic()), std::move(fault));
}

/// A peer with a fault on a thread, and a client.
struct Mmi {
    explicit Mmi(Fault fault = {}) : thread(peerWith(std::move(fault))) {}

    /// Sends a command and receives the given number of datagrams.
    std::vector<std::string> ask(std::string_view command, std::size_t count) const {
        client.send(command);
        std::vector<std::string> datagrams;
        while (datagrams.size() < count) {
            datagrams.push_back(client.receive().value_or("nothing came"));
        }
        return datagrams;
    }

    PeerThread thread;
    DatagramClient client = DatagramClient::ofPort(port);
};

const std::vector<std::string>& heapStats() {
    static const std::vector<std::string> datagrams = mmiDatagrams(mmiReplyText("iwf", "HeapStats"));
    return datagrams;
}

}  // namespace

TEST(MmiPeerTest, AnswersEachCommandInSeveralDatagramsAndEndsWithTheMarker) {
    const Mmi mmi;

    for (const char* command : {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        SCOPED_TRACE(command);
        std::vector<std::string> expected = mmiDatagrams(mmiReplyText("iwf", command));
        EXPECT_GT(expected.size(), 1U);
        expected.push_back(marker);
        EXPECT_EQ(mmi.ask(command, expected.size()), expected);
        EXPECT_TRUE(mmi.client.nothingMore());
    }
}

TEST(MmiPeerTest, AnswersAnUnknownCommandWithAnError) {
    const Mmi mmi;

    const std::vector<std::string> expected{"Unknown command: heapstats\n", marker};
    EXPECT_EQ(mmi.ask("heapstats", 2), expected);
}

TEST(MmiPeerTest, ClearsTheQosStatisticsOfItsInstance) {
    const Mmi mmi;
    const std::string before = contentOfFile("/tmp/fuse/iwf/qosStats");

    const std::vector<std::string> expected{"iwf: QoS statistics cleared", marker};
    EXPECT_EQ(mmi.ask("resetqosstats", 2), expected);

    const std::string cleared = contentOfFile("/tmp/fuse/iwf/qosStats");
    EXPECT_NE(cleared, before);
    EXPECT_EQ(mmi.ask("resetqosstats", 2), expected);
    EXPECT_EQ(contentOfFile("/tmp/fuse/iwf/qosStats"), cleared);
}

TEST(MmiPeerTest, AcceptsOnlyTheWholeWordForThatRequest) {
    const Mmi mmi;
    const std::string before = contentOfFile("/tmp/fuse/iwf/qosStats");

    for (const std::string_view command :
         {std::string_view("resetqosstats\0", 14), std::string_view("resetqosstats now"),
          std::string_view("resetqosstat"), std::string_view("ResetQosStats")}) {
        const std::vector<std::string> expected{"Unknown command: " + std::string(command) + "\n", marker};
        EXPECT_EQ(mmi.ask(command, 2), expected);
    }

    EXPECT_EQ(contentOfFile("/tmp/fuse/iwf/qosStats"), before);
}

TEST(MmiPeerTest, RecordsCommandsByteForByte) {
    const Mmi mmi;

    mmi.ask(std::string_view("Heap\0\n", 6), 2);

    EXPECT_EQ(Board::received("iwf_dispatcher"), std::vector<std::string>{"48656170000a"});
}

TEST(MmiPeerTest, SendsTheWrongReplyThatItsFaultDescribes) {
    std::string everyByte;
    for (int byte = 1; byte <= 0xff; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    const std::vector<std::pair<Fault, std::vector<std::string>>> cases{
        {{"slow", 1}, {heapStats()[0], heapStats()[1], marker}},
        {{"joined"}, {heapStats()[0] + marker}},
        {{"empty"}, {heapStats()[0], ""}},
        {{"stale"}, {"left over from an earlier command\n", heapStats()[0], heapStats()[1], marker}},
        {{"binary"}, {everyByte, "\n\n", everyByte + "\n", marker}},
        {{"silent"}, {}},
    };
    for (const auto& [fault, datagrams] : cases) {
        SCOPED_TRACE(fault.kind);
        const Mmi mmi(fault);
        EXPECT_EQ(mmi.ask("HeapStats", datagrams.size()), datagrams);
        EXPECT_TRUE(mmi.client.nothingMore());
    }
}

TEST(MmiPeerTest, SendsOddDatagramsAndNoMarkerIfUnended) {
    const Mmi mmi({"unended"});

    const std::vector<std::string> datagrams = mmi.ask("HeapStats", 2);

    EXPECT_THAT(datagrams, testing::Each(testing::SizeIs(513)));
    EXPECT_THAT(datagrams[0] + datagrams[1], testing::StartsWith(heapStats()[0] + heapStats()[1]));
    EXPECT_TRUE(mmi.client.nothingMore());
}

TEST(MmiPeerTest, SendsAsLongAsSomebodyListensIfEndless) {
    const PeerThread peer(peerWith({"endless"}));
    {
        const auto listener = DatagramClient::ofPort(port);
        listener.send("HeapStats");
        for (int i = 0; i < 1000; ++i) {
            ASSERT_EQ(listener.receive(), heapStats()[0]);
        }
    }
    // Without its listener the peer ends, and so does its thread.
}

TEST(MmiPeerTest, ExitsAfterItsFirstDatagramIfDying) {
    const Mmi mmi({"dying"});

    EXPECT_EQ(mmi.ask("HeapStats", 1).front(), heapStats()[0]);

    while (mmi.client.send("HeapStats")) {
    }
    EXPECT_EQ(errno, ECONNREFUSED);
}

TEST(MmiReplyTest, CutsTextAtLineEndsIntoDatagramsThatFitTheLimit) {
    const std::string line(255, 'x');

    const std::vector<std::string> expected{line + "\n" + line + "\n", "y\n"};
    EXPECT_EQ(mmiDatagrams(line + "\n" + line + "\ny\n"), expected);
}
