#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "LogFixture.hpp"

namespace {

class SmLogPositionsTest : public LogFixture {
protected:
    /// More entries than a log keeps, numbered from `first`.
    void overwriteAll(int first) const { writeNumbered(first, overwriting); }

    static constexpr int overwriting = 70000;
    static constexpr std::uint64_t wrap = std::numeric_limits<std::uint32_t>::max();
};

TEST_F(SmLogPositionsTest, ReportsNoOverlapToAReaderThatKeepsUp) {
    unsigned position = 0;
    for (int round = 0; round < 20; ++round) {
        writeNumbered(round * 10000, 10000);
        const Reading news = read(position);
        EXPECT_EQ(textsOf(news.text), numbered(round * 10000, 10000));
        EXPECT_FALSE(client().overlap(position, news.end));
        position = news.end;
    }
}

TEST_F(SmLogPositionsTest, ReportsAnOverlapToAReaderThatFellBehind) {
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    overwriteAll(1);

    const std::string oldest = read(0).text;
    const Reading late = read(before);
    writeNumbered(overwriting + 1, 1);
    const Reading next = read(late.end);

    EXPECT_TRUE(client().overlap(before, late.end));
    EXPECT_TRUE(late.text == oldest);
    EXPECT_EQ(textsOf(next.text), numbered(overwriting + 1, 1));
    EXPECT_FALSE(client().overlap(late.end, next.end));
}

TEST_F(SmLogPositionsTest, ReportsNoOverlapForEntriesReadBeforeTheyWereOverwritten) {
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    writeNumbered(1, 1);
    const unsigned after = read(before).end;

    overwriteAll(2);

    EXPECT_FALSE(client().overlap(before, after));
}

TEST_F(SmLogPositionsTest, ReportsAnOverlapForAnySizeOfTheBuffer) {
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    overwriteAll(1);

    const Reading tooSmall = read(before, 10);
    const Reading small = read(tooSmall.end, 1000);

    EXPECT_EQ(tooSmall.text, "");
    EXPECT_TRUE(client().overlap(before, tooSmall.end));
    EXPECT_EQ(small.text, read(0, 1000).text);
    EXPECT_FALSE(client().overlap(tooSmall.end, small.end));
}

TEST_F(SmLogPositionsTest, LosesNothingIfOnlyReadEntriesAreOverwritten) {
    writeNumbered(0, 30000);
    const unsigned before = read(0).end;
    writeNumbered(30000, 30000);

    const Reading news = read(before);

    EXPECT_EQ(textsOf(news.text), numbered(30000, 30000));
    EXPECT_FALSE(client().overlap(before, news.end));
}

TEST_F(SmLogPositionsTest, ReportsNoOverlapToAReaderThatStartsWithTheOldest) {
    overwriteAll(0);

    EXPECT_FALSE(client().overlap(0, read(0).end));
}

TEST_F(SmLogPositionsTest, ReadsTheOldestFromAnInvalidPosition) {
    writeNumbered(0, 3);
    const Reading all = read(0);

    for (const unsigned start : {all.end - 1, all.end + 1, all.end / 2, 0x80000000U, 0xFFFFFFFFU}) {
        const Reading reading = read(start);
        EXPECT_EQ(reading.text, all.text) << start;
        EXPECT_EQ(reading.end, all.end) << start;
        EXPECT_TRUE(client().overlap(start, reading.end)) << start;
    }
}

TEST_F(SmLogPositionsTest, NeverReturnsPositionZero) {
    EXPECT_NE(read(0).end, 0U);
    EXPECT_NE(read(0, 0).end, 0U);
}

TEST_F(SmLogPositionsTest, ContinuesWhenThePositionsWrap) {
    beginAfter(wrap - 1000);
    std::vector<unsigned> ends;
    unsigned position = 0;
    for (int i = 0; i < 100; ++i) {
        writeNumbered(i, 1);
        const Reading news = read(position);
        EXPECT_EQ(textsOf(news.text), numbered(i, 1));
        EXPECT_FALSE(client().overlap(position, news.end));
        position = news.end;
        ends.push_back(position);
    }

    EXPECT_GT(ends.front(), ends.back());
    EXPECT_EQ(keptTexts(), numbered(0, 100));
}

TEST_F(SmLogPositionsTest, ReportsAnOverlapAcrossTheWrap) {
    beginAfter(wrap - 1000);
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    overwriteAll(1);

    const Reading late = read(before);

    EXPECT_LT(late.end, before);
    EXPECT_TRUE(client().overlap(before, late.end));
    EXPECT_TRUE(late.text == read(0).text);
}

/// For every distance between the end of an entry and the wrap.
class WrapDistanceTest : public SmLogPositionsTest, public testing::WithParamInterface<int> {};

TEST_P(WrapDistanceTest, NeverReturnsPositionZeroOrTheSameTwice) {
    constexpr std::size_t lineLength =
        std::string_view("2031-05-17T08:15:00.123456Z 6 Test: entry 0\n").size();
    beginAfter(wrap - lineLength + static_cast<std::uint64_t>(GetParam()));
    const unsigned empty = read(0).end;

    writeNumbered(0, 1);
    const Reading first = read(empty);
    writeNumbered(1, 1);
    const Reading second = read(first.end);

    EXPECT_EQ(textsOf(first.text), numbered(0, 1));
    EXPECT_EQ(textsOf(second.text), numbered(1, 1));
    EXPECT_NE(empty, 0U);
    EXPECT_NE(first.end, 0U);
    EXPECT_NE(second.end, 0U);
    EXPECT_NE(empty, first.end);
    EXPECT_NE(first.end, second.end);
}

INSTANTIATE_TEST_SUITE_P(All, WrapDistanceTest, testing::Range(-8, 9));

}  // namespace
