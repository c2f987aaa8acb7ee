#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "Board.hpp"
#include "DumpPeer.hpp"
#include "TextFile.hpp"

using Boardsim::Board;
using Boardsim::DumpPeer;
using Boardsim::Fault;
using Boardsim::PeerDeath;
using Boardsim::readTextFile;
using Boardsim::writeTextFile;

namespace {

constexpr const char* dumpFile = "/tmp/netfp_proxy.log";
constexpr const char* body = "the first line\nthe second line\n";
const std::string opening = "<netfp_proxy_dump>\n";
const std::string terminator = "</netfp_proxy_dump>\n";

/// The dump file of a peer with this fault after one signal. The peer runs in this process, so its dump is
/// finished when serve() returns.
std::string dumpOf(const Fault& fault) {
    std::filesystem::remove(dumpFile);
    DumpPeer peer(
        "netfp_proxy", [] { return body; }, fault);
    ::kill(::getpid(), SIGUSR1);
    peer.serve();
    return readTextFile(dumpFile);
}

}  // namespace

TEST(DumpPeerTest, DumpsItsStateBetweenItsTwoLines) {
    EXPECT_EQ(dumpOf({}), opening + body + terminator);
}

TEST(DumpPeerTest, ReplacesAnEarlierDump) {
    DumpPeer peer("netfp_proxy", [] { return body; });
    writeTextFile(dumpFile, std::string(1000, 'x'));

    ::kill(::getpid(), SIGUSR1);
    peer.serve();

    EXPECT_EQ(readTextFile(dumpFile), opening + body + terminator);
}

TEST(DumpPeerTest, RecordsTheSignal) {
    dumpOf({});

    EXPECT_EQ(Board::received("netfp_proxy"), std::vector<std::string>{"SIGUSR1"});
}

TEST(DumpPeerTest, WritesTheDumpThatItsFaultDescribes) {
    EXPECT_EQ(dumpOf({"slow", 1}), opening + body + terminator);
    EXPECT_EQ(dumpOf({"unended"}), opening + body);
    EXPECT_EQ(dumpOf({"short"}), opening + terminator);
}

TEST(DumpPeerTest, WritesNoFileWhenSilent) {
    DumpPeer peer("netfp_proxy", [] { return body; }, {"silent"});
    std::filesystem::remove(dumpFile);

    ::kill(::getpid(), SIGUSR1);
    peer.serve();

    EXPECT_FALSE(std::filesystem::exists(dumpFile));
}

TEST(DumpPeerTest, LeavesHalfADumpWhenDying) {
    DumpPeer peer("netfp_proxy", [] { return body; }, {"dying"});

    ::kill(::getpid(), SIGUSR1);
    EXPECT_THROW(peer.serve(), PeerDeath);

    const std::string dump = readTextFile(dumpFile);
    EXPECT_EQ(dump, (opening + body).substr(0, dump.size()));
    EXPECT_LT(dump.size(), (opening + body).size());
    EXPECT_GT(dump.size(), opening.size());
}

TEST(DumpPeerTest, PausesBetweenPiecesForTheTimeOfItsFault) {
    const auto begin = std::chrono::steady_clock::now();

    dumpOf({"slow", 20});

    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(5 * 20));
}
