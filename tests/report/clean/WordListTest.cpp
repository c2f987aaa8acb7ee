#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WordList.hpp"

using Report::ListedWord;
using Report::parseWordList;

namespace {

std::vector<std::string> namesIn(std::string_view text) {
    std::vector<std::string> names;
    for (const ListedWord& word : parseWordList(text)) {
        names.push_back(std::to_string(word.line) + " " + word.name);
    }
    return names;
}

TEST(WordList, HasAWordInEachLine) {
    EXPECT_THAT(namesIn("alpha\n\n# a comment\n  beta \r\ngamma"),
                testing::ElementsAre("1 alpha", "4 beta", "5 gamma"));
}

TEST(WordList, MayBeginWithAByteOrderMark) {
    EXPECT_THAT(namesIn("\xef\xbb\xbf"
                        "alpha\n"),
                testing::ElementsAre("1 alpha"));
}

TEST(WordList, RefusesALineThatIsNoWord) {
    for (const std::string& line : {std::string("two words"), std::string(5000, 'x')}) {
        try {
            parseWordList("alpha\n" + line + "\n");
            ADD_FAILURE() << "accepted: " << line.substr(0, 20);
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr("2"));
        }
    }
}

}  // namespace
