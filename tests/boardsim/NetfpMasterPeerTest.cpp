#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "NetfpMasterPeer.hpp"
#include "PeerThread.hpp"

using Boardsim::Board;
using Boardsim::Fault;
using Boardsim::InterfaceTable;
using Boardsim::NetfpMasterPeer;
using Boardsim::PeerThread;

namespace {

constexpr const char* masterPath = "/tmp/master";
constexpr std::uint32_t requestId = 0xfffffff0U;

NetfpMaster_Request requestOf(std::uint32_t type) {
    NetfpMaster_Request request{};
    request.type = static_cast<NetfpMaster_MessageType>(type);
    request.requestId = requestId;
    return request;
}

NetfpMaster_Request portRequest(std::string_view interface) {
    NetfpMaster_Request request = requestOf(NETFP_MASTER_GET_SWITCH_PORT);
    std::memcpy(request.body.getSwitchPort.interfaceName, interface.data(),
                std::min(interface.size(), sizeof request.body.getSwitchPort.interfaceName));
    return request;
}

NetfpMaster_Request mirrorRequest(std::uint8_t from, std::uint8_t to) {
    NetfpMaster_Request request = requestOf(NETFP_MASTER_SET_PORT_MIRRORING);
    request.body.setPortMirroring = {1, Netfp_Direction_OUTBOUND, from, to, {}};
    return request;
}

NetfpMaster_Request renameRequest(std::string_view currentName, std::string_view newName) {
    NetfpMaster_Request request = requestOf(NETFP_MASTER_RENAME_INTERFACE);
    auto& [current, next] = request.body.renameInterface;
    currentName.copy(current, sizeof current);
    newName.copy(next, sizeof next);
    return request;
}

NetfpMaster_Request multicastRequest(std::uint8_t firstByte) {
    NetfpMaster_Request request = requestOf(NETFP_MASTER_ADD_MULTICAST_MAC);
    NetfpMaster_AddMulticastMac& filter = request.body.addMulticastMac;
    filter.mac[0] = firstByte;
    filter.ignoreVlan = 1;
    std::string_view("eth3").copy(filter.interfaceName, sizeof filter.interfaceName);
    return request;
}

std::string bytesOf(const NetfpMaster_Request& request) {
    return {reinterpret_cast<const char*>(&request), sizeof request};
}

/// The fields of a response that a client reads.
struct Answer {
    std::size_t size;
    std::uint32_t requestId;
    std::int32_t errorCode;
    std::int32_t switchPort;
    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << answer.size << " bytes, request " << answer.requestId << ", error " << answer.errorCode
         << ", port " << answer.switchPort;
}

/// A master with a fault on a thread, and a client.
struct Master {
    explicit Master(Fault fault = {})
        : thread(std::make_unique<NetfpMasterPeer>(table, std::move(fault), masterPath)) {}

    Answer ask(const std::string& request) const {
        client.send(request);
        return nextAnswer();
    }

    Answer nextAnswer() const {
        const std::string bytes = client.receive().value_or("");
        NetfpMaster_Response response{};
        std::memcpy(&response, bytes.data(), std::min(bytes.size(), sizeof response));
        return {bytes.size(), response.requestId, response.errorCode, response.switchPort};
    }

    std::shared_ptr<InterfaceTable> table = std::make_shared<InterfaceTable>();
    PeerThread thread;
    DatagramClient client = DatagramClient::ofPath(masterPath, "/tmp/client");
};

constexpr std::size_t whole = sizeof(NetfpMaster_Response);
constexpr Answer done{whole, requestId, 0, 0};
constexpr Answer renameRefused{whole, requestId, NetfpMasterPeer::refusedRename, 0};

}  // namespace

TEST(NetfpMasterPeerTest, AnswersWithThePortOfAnInterface) {
    const Master master;

    EXPECT_EQ(master.ask(bytesOf(portRequest("eth1"))), (Answer{whole, requestId, 0, 2}));
}

TEST(NetfpMasterPeerTest, RefusesAnUnknownInterface) {
    const Master master;

    for (const char* name : {"", "eth", "eth10", "ETH1", "a name that uses all thirty-two by"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(master.ask(bytesOf(portRequest(name))),
                  (Answer{whole, requestId, NetfpMasterPeer::unknownInterface, 0}));
    }
}

TEST(NetfpMasterPeerTest, MirrorsPortsInItsTable) {
    auto table = std::make_shared<InterfaceTable>();
    {
        const PeerThread thread(std::make_unique<NetfpMasterPeer>(table, Fault{}, masterPath));
        const auto client = DatagramClient::ofPath(masterPath, "/tmp/client");
        client.send(bytesOf(mirrorRequest(1, 2)));
        EXPECT_TRUE(client.receive());
    }

    EXPECT_THAT(table->text(), testing::EndsWith("mirroring:\n  outbound port 1 to port 2\n"));
}

TEST(NetfpMasterPeerTest, RefusesMirroringThatTheTableRefuses) {
    const Master master;

    EXPECT_EQ(master.ask(bytesOf(mirrorRequest(1, 9))),
              (Answer{whole, requestId, NetfpMasterPeer::refusedMirroring, 0}));
}

TEST(NetfpMasterPeerTest, AnswersWithThePortOfARenamedInterface) {
    const Master master;
    const std::string longest(31, 'n');

    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth1", longest))), done);

    EXPECT_EQ(master.ask(bytesOf(portRequest(longest))), (Answer{whole, requestId, 0, 2}));
    EXPECT_EQ(master.ask(bytesOf(portRequest("eth1"))),
              (Answer{whole, requestId, NetfpMasterPeer::unknownInterface, 0}));
}

TEST(NetfpMasterPeerTest, RefusesARenameThatTheTableRefuses) {
    const Master master;

    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth0", "eth1"))), renameRefused);
}

TEST(NetfpMasterPeerTest, RefusesOnlyTheRenameThatItsFaultNumbers) {
    const Master master({"refuse-rename", 2});

    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth9", "a"))), renameRefused);  // an unknown name counts too
    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth0", "b"))), renameRefused);
    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth0", "c"))), done);

    EXPECT_EQ(master.ask(bytesOf(portRequest("c"))), (Answer{whole, requestId, 0, 1}));
}

TEST(NetfpMasterPeerTest, ReportsSuccessForRenamesThatItIgnores) {
    const Master master({"ignore-renames"});

    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth0", "a"))), done);
    EXPECT_EQ(master.ask(bytesOf(renameRequest("eth9", "b"))), done);

    EXPECT_EQ(master.ask(bytesOf(portRequest("eth0"))), (Answer{whole, requestId, 0, 1}));
}

TEST(NetfpMasterPeerTest, AddsMulticastFiltersThatTheTableAccepts) {
    const Master master;

    EXPECT_EQ(master.ask(bytesOf(multicastRequest(0x01))), done);
    EXPECT_EQ(master.ask(bytesOf(multicastRequest(0x02))),
              (Answer{whole, requestId, NetfpMasterPeer::refusedMulticast, 0}));

    EXPECT_THAT(master.table->text(),
                testing::EndsWith("multicast:\n   eth3 01:00:00:00:00:00 type 0x0000 vlan any\n"));
}

TEST(NetfpMasterPeerTest, RefusesAnInvalidRequest) {
    const Master master;
    const std::string request = bytesOf(portRequest("eth1"));
    const struct {
        std::string bytes;
        Answer answer;
    } cases[] = {
        {"", {whole, 0, NetfpMasterPeer::wrongSize, 0}},
        {request.substr(0, 147), {whole, requestId, NetfpMasterPeer::wrongSize, 0}},
        {request + '\0', {whole, requestId, NetfpMasterPeer::wrongSize, 0}},
        {bytesOf(requestOf(0)), {whole, requestId, NetfpMasterPeer::unknownMessage, 0}},
        {bytesOf(requestOf(5)), {whole, requestId, NetfpMasterPeer::unknownMessage, 0}},
    };
    for (const auto& [bytes, answer] : cases) {
        SCOPED_TRACE(bytes.size());
        EXPECT_EQ(master.ask(bytes), answer);
    }
}

TEST(NetfpMasterPeerTest, RecordsEveryDatagramThatItReceives) {
    const Master master;

    master.ask("\x01\xfe");
    master.ask(std::string(2, '\0'));

    const std::vector<std::string> expected{"01fe", "0000"};
    EXPECT_EQ(Board::received("netfp_master"), expected);
}

TEST(NetfpMasterPeerTest, SendsTheWrongAnswerThatItsFaultDescribes) {
    const std::vector<std::pair<Fault, std::vector<Answer>>> cases{
        {{"error", -7}, {{whole, requestId, -7, 2}}},
        {{"slow", 1}, {{whole, requestId, 0, 2}}},
        {{"stale"}, {{whole, requestId - 1, 0, 2}, {whole, requestId, 0, 2}}},
        {{"truncated", 12}, {{12, requestId, 0, 0}}},
        {{"oversized"}, {{400, requestId, 0, 2}}},
    };
    for (const auto& [fault, answers] : cases) {
        SCOPED_TRACE(fault.kind);
        const Master master(fault);
        master.client.send(bytesOf(portRequest("eth1")));
        for (const Answer& answer : answers) {
            EXPECT_EQ(master.nextAnswer(), answer);
        }
        EXPECT_TRUE(master.client.nothingMore());
    }
}

TEST(NetfpMasterPeerTest, SendsAnEmptyDatagramIfCutToZeroBytes) {
    const Master master({"truncated", 0});

    master.client.send(bytesOf(portRequest("eth1")));

    EXPECT_EQ(master.client.receive(), "");
}

TEST(NetfpMasterPeerTest, ReceivesARequestWithoutAnAnswerIfSilent) {
    const Master master({"silent"});

    ASSERT_TRUE(master.client.send(bytesOf(portRequest("eth1"))));

    EXPECT_TRUE(master.client.nothingMore());
}

TEST(NetfpMasterPeerTest, ExitsAfterItsFirstRequestIfDying) {
    const Master master({"dying"});

    master.client.send(bytesOf(portRequest("eth1")));

    while (master.client.send("again")) {
    }
    EXPECT_EQ(errno, ECONNREFUSED);
}
