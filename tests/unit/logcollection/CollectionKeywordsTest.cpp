// The keywords of log collection and their effects.

#include <set>

#include <gtest/gtest.h>

#include "CollectionKeywords.hpp"
#include "FuseLogCollector.hpp"
#include "MmiLogCollector.hpp"
#include "TiLogCollector.hpp"

using Korvel::CoverageMasks;
using Korvel::findCollectionKeyword;

namespace {

/// The masks that result from coverage keywords in this order.
CoverageMasks coverageOf(const std::vector<std::string>& words) {
    CoverageMasks masks = Korvel::noCoverage();
    for (const std::string& word : words) {
        applyCoverage(*findCollectionKeyword(word), masks);
    }
    return masks;
}

CoverageMasks masks(unsigned ti, unsigned mmi, unsigned fuse) {
    return {{"ti", ti}, {"mmi", mmi}, {"fuse", fuse}};
}

}  // namespace

TEST(CollectionKeywordsTest, KnowsTheOutputBitsOfEachKeyword) {
    const std::pair<std::string, unsigned> expected[] = {
        {"print", 1},      {"dump", 2}, {"pkg", 6},   {"pkg-trs", 14}, {"pkg-sup", 22}, {"pkg-pm", 38},
        {"pkg-sdown", 70}, {"all", 0},  {"netfp", 0}, {"proxy", 0},    {"server", 0},   {"master", 0},
        {"resmgr", 0},     {"slog", 0}, {"dinf", 0},  {"dstat", 0},    {"dlog", 0},     {"dall", 0},
    };
    for (const auto& [word, output] : expected) {
        const Korvel::CollectionKeyword* const keyword = findCollectionKeyword(word);
        ASSERT_NE(keyword, nullptr) << word;
        EXPECT_EQ(keyword->output, output) << word;
    }
    EXPECT_EQ(Korvel::outputKeywords().size() + Korvel::coverageKeywords().size(), std::size(expected));
}

TEST(CollectionKeywordsTest, KnowsTheCoverageOfEachKeyword) {
    const std::pair<std::string, CoverageMasks> expected[] = {
        {"all", masks(31, 3, 7)},    {"netfp", masks(31, 0, 0)}, {"proxy", masks(2, 0, 0)},
        {"server", masks(1, 0, 0)},  {"master", masks(4, 0, 0)}, {"resmgr", masks(8, 0, 0)},
        {"slog", masks(16, 0, 0)},   {"dinf", masks(0, 1, 1)},   {"dstat", masks(0, 2, 2)},
        {"dlog", masks(0, 0, 4)},    {"dall", masks(0, 3, 7)},   {"print", masks(0, 0, 0)},
        {"pkg-sup", masks(0, 0, 0)},
    };
    for (const auto& [word, coverage] : expected) {
        EXPECT_EQ(coverageOf({word}), coverage) << word;
    }
}

TEST(CollectionKeywordsTest, FoldsCoverageInTheOrderGiven) {
    const std::pair<std::vector<std::string>, CoverageMasks> expected[] = {
        {{"proxy", "netfp"}, masks(31, 0, 0)},
        {{"netfp", "proxy"}, masks(31, 0, 0)},
        {{"dlog", "dall"}, masks(0, 3, 7)},
        {{"server", "all"}, masks(31, 3, 7)},
        {{"server", "proxy"}, masks(3, 0, 0)},
        {{"dinf", "dstat", "dlog"}, masks(0, 3, 7)},
        {{"master", "resmgr", "slog"}, masks(28, 0, 0)},
        {{"dinf", "dinf"}, masks(0, 1, 1)},
    };
    for (const auto& [words, coverage] : expected) {
        EXPECT_EQ(coverageOf(words), coverage) << words.front();
    }
}

TEST(CollectionKeywordsTest, FindsOnlyWholeWordsInTheirCase) {
    for (const std::string word : {"", "Print", "prin", "prints", "pkg-", "ALL", "dall*", " all", "fuse"}) {
        EXPECT_EQ(findCollectionKeyword(word), nullptr) << word;
    }
}

TEST(CollectionKeywordsTest, HasNoKeywordTwice) {
    std::set<std::string_view> words;
    for (const auto table : {Korvel::outputKeywords(), Korvel::coverageKeywords()}) {
        for (const Korvel::CollectionKeyword& keyword : table) {
            EXPECT_TRUE(words.insert(keyword.word).second) << keyword.word;
        }
    }
}

TEST(CollectionKeywordsTest, CoversNothingOrEverythingInTheOrderOfTheRun) {
    EXPECT_EQ(Korvel::noCoverage(), masks(0, 0, 0));
    EXPECT_EQ(Korvel::fullCoverage(), masks(31, 3, 7));
    std::vector<std::string> order;
    for (const auto& [id, mask] : Korvel::fullCoverage()) {
        order.push_back(id);
    }
    EXPECT_EQ(order, (std::vector{Korvel::FuseLogCollector::id, Korvel::MmiLogCollector::id,
                                  Korvel::TiLogCollector::id}));
}
