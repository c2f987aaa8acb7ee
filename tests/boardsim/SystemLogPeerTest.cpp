#include <string>

#include <gtest/gtest.h>
#include <syslog.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "SystemLogPeer.hpp"
#include "TextFile.hpp"

using Boardsim::Board;
using Boardsim::readTextFile;
using Boardsim::SystemLogPeer;

namespace {

/// Sends these records to a new system log, one after the other, and returns its file.
std::string logOf(const std::vector<std::string>& records) {
    SystemLogPeer peer("/tmp/log", "/tmp/system.log");
    const auto client = DatagramClient::ofPath("/tmp/log", "/tmp/client");
    for (const std::string& record : records) {
        client.send(record);
        peer.serve();
    }
    return readTextFile("/tmp/system.log");
}

}  // namespace

TEST(SystemLogPeerTest, KeepsEachRecordAsOneLine) {
    EXPECT_EQ(logOf({"plain", "ended\n", std::string("zeroed\0", 7), "two\nlines", std::string("a\0b", 3)}),
              "plain\nended\nzeroed\ntwo lines\na b\n");
}

TEST(SystemLogPeerTest, RecordsDatagramsAsTheyCame) {
    logOf({"a\nb\n"});

    EXPECT_EQ(Board::received("system_log"), std::vector<std::string>{"610a620a"});
}

TEST(SystemLogPeerTest, ReceivesTheMessagesThatProgramsLog) {
    SystemLogPeer peer;
    ::openlog("boardsim_test", 0, LOG_USER);

    ::syslog(LOG_NOTICE, "a message");
    peer.serve();

    EXPECT_TRUE(readTextFile(Boardsim::BoardPaths::systemLog).ends_with(" boardsim_test: a message\n"));
}
