#include <gtest/gtest.h>

#include "BoundedText.hpp"

using Korvel::appendWithin;

namespace {

TEST(AppendWithin, AddsUpToTheLimitAndReturnsWhetherAllFits) {
    std::string text;

    EXPECT_TRUE(appendWithin(5, text, "123"));
    EXPECT_TRUE(appendWithin(5, text, "45"));
    EXPECT_EQ(text, "12345");
    EXPECT_TRUE(appendWithin(5, text, ""));
    EXPECT_FALSE(appendWithin(5, text, "6"));
    EXPECT_EQ(text, "12345");
}

TEST(AppendWithin, AddsTheStartOfATextThatFitsInPart) {
    std::string text = "1234";

    EXPECT_FALSE(appendWithin(5, text, "567"));

    EXPECT_EQ(text, "12345");
}

TEST(AppendWithin, AddsAnythingWithoutALimit) {
    std::string text;

    EXPECT_TRUE(appendWithin(Korvel::noSizeLimit, text, std::string(100'000, 'x')));
    EXPECT_TRUE(appendWithin(Korvel::noSizeLimit, text, "y"));

    EXPECT_EQ(text.size(), 100'001U);
}

TEST(AppendWithin, TakesNoMoreMemoryThanASmallTextNeeds) {
    constexpr std::size_t limit = 16U << 20U;
    std::string text;

    for (int piece = 0; piece < 10; ++piece) {
        EXPECT_TRUE(appendWithin(limit, text, std::string().append(10'000, 'x')));
    }

    EXPECT_LT(text.capacity(), 2 * text.size());
}

TEST(AppendWithin, NeverMovesALargeTextTwice) {
    constexpr std::size_t limit = 1U << 20U;
    const std::string piece(1U << 15U, 'x');
    std::string text;
    for (std::size_t size = 0; size <= limit / 4; size += piece.size()) {
        EXPECT_TRUE(appendWithin(limit, text, piece));
    }
    const char* const place = text.data();

    while (appendWithin(limit, text, piece)) {
    }

    EXPECT_EQ(text.data(), place);
    EXPECT_EQ(text.size(), limit);
}

}  // namespace
