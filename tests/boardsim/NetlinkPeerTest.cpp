// A netlink port of the board: the requests that it answers, and those that it ignores.

#include <string>
#include <vector>

#include "Board.hpp"
#include "NetlinkPeerFixture.hpp"
#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

using Boardsim::Board;
using Boardsim::PeerThread;

namespace {

class NetlinkPeerTest : public NetlinkPeerFixture {
protected:
    /// The message gets no answer. The answer to a later request proves it.
    void expectIgnored(const std::string& datagram) {
        ASSERT_TRUE(client.send(datagram));
        ASSERT_TRUE(client.send(plain(++lastSequence)));
        EXPECT_EQ(client.receive(), answerToPlain(lastSequence));
    }

    PeerThread peer = peerWith({});

private:
    std::uint32_t lastSequence = 1000;
};

/// `message` with a number of 32 bits replaced.
std::string with(std::string message, std::size_t offset, std::uint32_t number) {
    return message.replace(offset, 4, littleEndian(number));
}

constexpr std::size_t typeAndFlagsOffset = 4;

}  // namespace

TEST_F(NetlinkPeerTest, AnswersWithTypeStatusAndTheRequestsSequenceNumber) {
    for (const std::uint32_t sequence : {0U, 1U, 0x01020304U, 0xffffffffU}) {
        client.send(plain(sequence));
        EXPECT_EQ(client.receive(), answerToPlain(sequence));
    }
    EXPECT_TRUE(client.nothingMore());
}

TEST_F(NetlinkPeerTest, AnswersWithTheStatusOfTheRequestedService) {
    client.send(request(7, littleEndian(letterRequest) + "a"));

    EXPECT_EQ(client.receive(), netlinkMessage(7, peerPort, statusPayload(letterResponse, 'a')));
}

TEST_F(NetlinkPeerTest, DoesNotAnswerAnUnknownType) {
    for (const std::uint32_t type : {0U, 18U, 22U, 24U, 0x01000011U}) {
        SCOPED_TRACE(type);
        expectIgnored(request(1, littleEndian(type)));
    }
}

TEST_F(NetlinkPeerTest, DoesNotAnswerARequestOfAnotherSize) {
    const std::string letter = littleEndian(letterRequest);
    for (const std::string& payload : {std::string(), letter.substr(0, 3), letter, letter + "ab",
                                       letter + std::string(4092, 'a'), littleEndian(plainRequest) + "a"}) {
        SCOPED_TRACE(payload.size());
        expectIgnored(request(1, payload));
    }
}

TEST_F(NetlinkPeerTest, DoesNotAnswerADatagramThatEndsInsideItsHeader) {
    for (const auto size : std::initializer_list<std::size_t>{1, 15}) {
        expectIgnored(plain(1).substr(0, size));
    }
}

TEST_F(NetlinkPeerTest, DoesNotAnswerAWrongHeader) {
    const struct {
        std::size_t offset;
        std::uint32_t number;
    } cases[] = {
        {netlinkLengthOffset, 19},          {netlinkLengthOffset, 21},        {netlinkLengthOffset, 0},
        {netlinkLengthOffset, 4},           {typeAndFlagsOffset, 0},          {typeAndFlagsOffset, 2},
        {typeAndFlagsOffset, plainRequest}, {typeAndFlagsOffset, 0x00010001}, {netlinkPortOffset, 0},
        {netlinkPortOffset, ownPort() + 1}, {netlinkPortOffset, peerPort},
    };
    for (const auto& [offset, number] : cases) {
        SCOPED_TRACE(testing::Message() << number << " at " << offset);
        expectIgnored(with(plain(1), offset, number));
    }
}

TEST_F(NetlinkPeerTest, RecordsEveryDatagramThatItReceives) {
    client.send("\x01\xfe");
    client.send(with(plain(1), netlinkPortOffset, 0));
    client.send(plain(2));
    ASSERT_TRUE(client.receive());

    const std::vector<std::string> records = Board::received("netfp_proxy");
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0], "01fe");
    EXPECT_EQ(records[1], "1400000001000000010000000000000011000000");
}
