#include <gtest/gtest.h>

#include "Words.hpp"

using Korvel::getNthTokenFromString;

namespace {

TEST(GetNthTokenFromString, CountsFromOne) {
    EXPECT_EQ(getNthTokenFromString("one two three", 1), "one");
    EXPECT_EQ(getNthTokenFromString("one two three", 2), "two");
    EXPECT_EQ(getNthTokenFromString("one two three", 3), "three");
}

TEST(GetNthTokenFromString, SeparatesByAnyWhiteSpace) {
    EXPECT_EQ(getNthTokenFromString("\n  one\t\ttwo\r\nthree  ", 3), "three");
}

TEST(GetNthTokenFromString, IsEmptyForWordZero) {
    EXPECT_EQ(getNthTokenFromString("one two", 0), "");
}

TEST(GetNthTokenFromString, ReturnsTheLastWordIfThereAreFewer) {
    EXPECT_EQ(getNthTokenFromString("one two", 3), "two");
    EXPECT_EQ(getNthTokenFromString("one two \n", 4000000000U), "two");
}

TEST(GetNthTokenFromString, IsEmptyForATextWithoutWords) {
    EXPECT_EQ(getNthTokenFromString("", 1), "");
    EXPECT_EQ(getNthTokenFromString(" \n\t", 2), "");
}

}  // namespace
