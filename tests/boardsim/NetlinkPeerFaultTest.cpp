// A faulty netlink port of the board.

#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "NetlinkPeer.hpp"
#include "NetlinkPeerFixture.hpp"
#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

using Boardsim::Fault;
using Boardsim::PeerThread;

namespace {

using Answers = std::vector<std::string>;

class NetlinkPeerFaultTest : public NetlinkPeerFixture {
protected:
    static constexpr std::uint32_t sequence = 7;

    /// The `count` answers of a peer with this fault to plain(sequence).
    Answers answersUnder(const Fault& fault, std::size_t count = 1) {
        const PeerThread peer = peerWith(fault);
        EXPECT_TRUE(client.send(plain(sequence)));
        Answers answers;
        while (answers.size() < count) {
            answers.push_back(client.receive().value_or("nothing"));
        }
        EXPECT_TRUE(client.nothingMore());
        return answers;
    }

    static std::string answer(std::uint32_t number, std::uint32_t port, std::uint32_t type,
                              std::uint32_t status) {
        return netlinkMessage(number, port, statusPayload(type, status));
    }

    const std::string right = answerToPlain(sequence);
};

}  // namespace

TEST_F(NetlinkPeerFaultTest, SendsNoAnswerIfSilent) {
    EXPECT_EQ(answersUnder({"silent"}, 0), Answers{});
}

TEST_F(NetlinkPeerFaultTest, SendsTheRightAnswerLateIfSlow) {
    const auto begin = std::chrono::steady_clock::now();

    EXPECT_EQ(answersUnder({"slow", 50}), Answers{right});

    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(50));
}

TEST_F(NetlinkPeerFaultTest, AnswersWithTheStatusOfAnError) {
    EXPECT_EQ(answersUnder({"error", 9}), Answers{answer(sequence, peerPort, plainResponse, 9)});
}

TEST_F(NetlinkPeerFaultTest, AnswersThePreviousRequestFirstIfStale) {
    EXPECT_EQ(answersUnder({"stale"}, 2),
              (Answers{answer(sequence - 1, peerPort, plainResponse, plainStatus), right}));
}

TEST_F(NetlinkPeerFaultTest, SendsAnAnswerWithOneWrongNumber) {
    EXPECT_EQ(answersUnder({"sequence"}),
              Answers{answer(sequence + 1000, peerPort, plainResponse, plainStatus)});
    EXPECT_EQ(answersUnder({"type"}), Answers{answer(sequence, peerPort, plainResponse + 1000, plainStatus)});
    EXPECT_EQ(answersUnder({"port"}), Answers{answer(sequence, peerPort + 1000, plainResponse, plainStatus)});
}

TEST_F(NetlinkPeerFaultTest, SendsOnlyTheStartOfItsAnswerIfTruncated) {
    for (const int size : {1, 15, 16, 23, 24}) {
        EXPECT_EQ(answersUnder({"truncated", size}),
                  Answers{right.substr(0, static_cast<std::size_t>(size))});
    }
}

TEST_F(NetlinkPeerFaultTest, SendsMoreThanItsAnswerIfOversized) {
    EXPECT_EQ(answersUnder({"oversized"}), Answers{right + std::string(400 - right.size(), '\xa5')});
}

TEST_F(NetlinkPeerFaultTest, ExitsAfterItsFirstRequestIfDying) {
    const PeerThread peer = peerWith({"dying"});

    client.send(plain(sequence));

    while (client.send(plain(sequence))) {
        std::this_thread::yield();
    }
    EXPECT_EQ(errno, ECONNREFUSED);
    EXPECT_TRUE(client.nothingMore());
}

TEST_F(NetlinkPeerFaultTest, AppliesItsFaultOnlyToRequests) {
    const PeerThread peer = peerWith({"dying"});

    client.send("no request");
    client.send(netlinkMessage(sequence, ownPort() + 1, littleEndian(plainRequest)));

    EXPECT_TRUE(client.nothingMore());
    EXPECT_TRUE(client.send(plain(sequence)));
}

TEST_F(NetlinkPeerFaultTest, RefusesAnUnknownFault) {
    EXPECT_THROW(peerWith({"unended"}), std::invalid_argument);
}
