// The word that enables or disables an action.

#include <gtest/gtest.h>

#include "EnableWord.hpp"

using Korvel::parseEnableWord;

TEST(EnableWordTest, SwitchesOn) {
    for (const char* const word : {"enable", "e", "en"}) {
        EXPECT_EQ(parseEnableWord(word), true) << word;
    }
}

TEST(EnableWordTest, SwitchesOff) {
    for (const char* const word : {"disable", "d", "dis"}) {
        EXPECT_EQ(parseEnableWord(word), false) << word;
    }
}

TEST(EnableWordTest, IsComparedWholeAndCaseSensitively) {
    for (const char* const word : {"", "Enable", "E", "ena", "enabled", " enable", "disab", "D", "1", "on"}) {
        EXPECT_EQ(parseEnableWord(word), std::nullopt) << word;
    }
}
