// The netlink ports of a running board.

#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "NetlinkWire.hpp"
#include "TextFile.hpp"
#include "WireNumber.hpp"

using Boardsim::Board;
using Boardsim::writeTextFile;

namespace {

std::uint32_t ownPortId() {
    return static_cast<std::uint32_t>(::getpid());
}

}  // namespace

TEST(BoardNetlinkTest, AnswersHeartbeatsAtEachPortIdWithTheStatusInThePeersFile) {
    const Board board({});
    const struct {
        std::string peer;
        std::uint32_t portId;
        std::uint32_t requestType;
    } cases[] = {{"netfp_proxy", 110, 17}, {"iwf_dispatcher", 120, 13}, {"sfn_dispatcher", 130, 13}};
    for (const auto& [peer, portId, requestType] : cases) {
        SCOPED_TRACE(peer);
        const auto client = DatagramClient::ofNetlinkPort(portId);
        for (const std::uint32_t status : {0U, 1U, 4294967295U, 0U}) {
            writeTextFile("/run/boardsim/heartbeat/" + peer, std::to_string(status) + "\n");
            client.send(netlinkMessage(status, ownPortId(), littleEndian(requestType)));
            EXPECT_EQ(client.receive(),
                      netlinkMessage(status, portId, statusPayload(requestType + 1, status)));
        }
    }
}

TEST(BoardNetlinkTest, HasAProxyThatAddsInterfaces) {
    const Board board({});
    const auto client = DatagramClient::ofNetlinkPort(110);
    const std::string eth1 = littleEndian(23) + "eth1" + std::string(28, '\0');
    const std::string noName = littleEndian(23) + std::string(32, '\0');
    const struct {
        std::string payload;
        std::uint32_t status;
    } cases[] = {{eth1, 0}, {eth1, 1}, {noName, 2}};
    for (const auto& [payload, status] : cases) {
        client.send(netlinkMessage(7, ownPortId(), payload));
        EXPECT_EQ(client.receive(), netlinkMessage(7, 110, statusPayload(24, status)));
    }
}
