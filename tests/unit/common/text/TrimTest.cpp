#include <gtest/gtest.h>

#include "Trim.hpp"

namespace {

using Trimmer = void (*)(std::string&);

std::string trimmed(Trimmer trimmer, std::string text) {
    trimmer(text);
    return text;
}

constexpr const char* allWhiteSpace = " \t\n\v\f\r";

TEST(Trim, RemovesWhiteSpaceAtBothEnds) {
    EXPECT_EQ(trimmed(trim, std::string(allWhiteSpace) + "a b" + allWhiteSpace), "a b");
}

TEST(Ltrim, RemovesWhiteSpaceAtTheStart) {
    EXPECT_EQ(trimmed(ltrim, std::string(allWhiteSpace) + "a b \n"), "a b \n");
}

TEST(Rtrim, RemovesWhiteSpaceAtTheEnd) {
    EXPECT_EQ(trimmed(rtrim, std::string("\n a b") + allWhiteSpace), "\n a b");
}

TEST(Trim, ReturnsAnEmptyTextForWhiteSpace) {
    for (const Trimmer trimmer : {trim, ltrim, rtrim}) {
        EXPECT_EQ(trimmed(trimmer, allWhiteSpace), "");
        EXPECT_EQ(trimmed(trimmer, ""), "");
    }
}

TEST(Trim, KeepsOtherBytes) {
    const std::string text("\0 \xa0\x80 x\xff\0", 8);
    for (const Trimmer trimmer : {trim, ltrim, rtrim}) {
        EXPECT_EQ(trimmed(trimmer, text), text);
    }
}

}  // namespace
