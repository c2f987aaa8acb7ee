#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PeerLogContent.hpp"

using Boardsim::parsePeerLog;
using Boardsim::PeerLogContent;
using Boardsim::peerLogDropSummary;
using Boardsim::peerLogLine;
using Boardsim::peerLogStampLength;

namespace {

constexpr const char* text =
    "2026-11-21T10:15:02.123Z <- SIGUSR1\n"
    "2026-11-21T10:15:02.124Z -> dump in /tmp/netfp_proxy.log (45 bytes)\n"
    "2026-11-21T10:15:03.000Z <- SIGUSR1\n"
    "2026-11-21T10:15:03.000Z -- no dump (fault silent)\n";

}  // namespace

TEST(PeerLogContentTest, CountsWhatWasReceivedAndAnswered) {
    const PeerLogContent content = parsePeerLog(text);

    EXPECT_EQ(content.lines.size(), 4U);
    EXPECT_EQ(content.dropped, 0U);
    EXPECT_EQ(content.received, 2U);
    EXPECT_EQ(content.answered, 1U);
}

TEST(PeerLogContentTest, IsEmptyIfNothingHappened) {
    EXPECT_THAT(parsePeerLog("").lines, testing::IsEmpty());
}

TEST(PeerLogContentTest, CountsDroppedLinesInTheirPlace) {
    const std::string dropSummary = peerLogDropSummary(text);

    EXPECT_EQ(dropSummary.substr(peerLogStampLength),
              " -- 4 lines before these were dropped: 2 received, 1 answered");
    const PeerLogContent content = parsePeerLog(dropSummary + "\n" + text);
    EXPECT_EQ(content.lines.size(), 4U);
    EXPECT_EQ(content.dropped, 4U);
    EXPECT_EQ(content.received, 4U);
    EXPECT_EQ(content.answered, 2U);
}

TEST(PeerLogContentTest, GoesOnCountingWhenLinesAreDroppedAgain) {
    EXPECT_EQ(peerLogDropSummary(peerLogDropSummary(text) + "\n" + text).substr(peerLogStampLength),
              " -- 8 lines before these were dropped: 4 received, 2 answered");
}

TEST(PeerLogContentTest, SkipsLinesThatAreNotOfTheLog) {
    const PeerLogContent content = parsePeerLog("short\n2026-11-21T10:15:03.000Z <- 4 lines before\n");

    EXPECT_EQ(content.lines, std::vector<std::string>{"2026-11-21T10:15:03.000Z <- 4 lines before"});
    EXPECT_EQ(content.received, 1U);
    EXPECT_EQ(content.dropped, 0U);
}

TEST(PeerLogContentTest, HasDateAndTimeWithMilliseconds) {
    EXPECT_THAT(peerLogLine("<-", "what came"),
                testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}Z "
                                      "<- what came"));
}
