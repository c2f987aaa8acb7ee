#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LineSplitter.hpp"
#include "PackedText.hpp"

namespace ReportTest {
namespace {

using Report::PackedText;
using ::testing::ElementsAre;

constexpr std::size_t unlimited = std::size_t{1} << 20;

PackedText packed(std::string_view text) {
    PackedText result;
    result.append(text);
    result.finish();
    return result;
}

std::vector<std::string> linesOf(const PackedText& text, std::size_t maxLine = unlimited) {
    std::vector<std::string> lines;
    text.forEachLine(maxLine, [&](std::string_view line) {
        lines.emplace_back(line);
        return true;
    });
    return lines;
}

/// A megabyte of lines of different lengths.
std::string longText() {
    std::string text;
    for (int line = 0; text.size() < unlimited; ++line) {
        text += std::string(static_cast<std::size_t>(line % 97), 'x') + std::to_string(line) + '\n';
    }
    return text;
}

TEST(PackedTextTest, ReturnsTheBytesAsTheyCame) {
    const std::string text = longText() + std::string("\0\xff no line end", 14);
    PackedText result;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view piece = rest.substr(0, 10'007);
        result.append(piece);
        rest.remove_prefix(piece.size());
    }
    EXPECT_EQ(result.size(), text.size());
    EXPECT_EQ(result.head(text.size() + 1), text);
    result.finish();
    EXPECT_EQ(result.head(text.size()), text);
    EXPECT_EQ(result.head(300'000), text.substr(0, 300'000));
    EXPECT_EQ(result.head(0), "");
    EXPECT_EQ(PackedText().head(10), "");
}

TEST(PackedTextTest, NeedsLessMemoryThanTheText) {
    const std::string text = longText();
    EXPECT_LT(packed(text).memory(), text.size() / 4);
    EXPECT_LT(packed(text.substr(0, 100'000)).memory(), 25'000U);
    EXPECT_LT(packed("short").memory(), 100U);
}

TEST(PackedTextTest, HasTheLinesOfTheText) {
    EXPECT_THAT(linesOf(packed("")), ElementsAre());
    EXPECT_THAT(linesOf(packed("a\n\nb\r\nc")), ElementsAre("a", "", "b\r", "c"));
    EXPECT_THAT(linesOf(packed("\n")), ElementsAre(""));
    EXPECT_THAT(linesOf(packed("long line\nshort\n1234567"), 6), ElementsAre("long l", "short", "123456"));

    const std::string text = longText();
    std::string joined;
    for (const std::string& line : linesOf(packed(text))) {
        joined += line + '\n';
    }
    EXPECT_EQ(joined, text);
}

TEST(PackedTextTest, CutsALineThatSpansBlocks) {
    const std::string text = std::string(700'000, 'x') + "\nend\n";
    EXPECT_THAT(linesOf(packed(text), 600'000), ElementsAre(std::string(600'000, 'x'), "end"));
    EXPECT_THAT(linesOf(packed(text), 3), ElementsAre("xxx", "end"));
}

TEST(PackedTextTest, StopsWhereTheCallerHasEnough) {
    int lines = 0;
    packed(longText()).forEachLine(unlimited, [&](std::string_view) { return ++lines < 3; });
    EXPECT_EQ(lines, 3);
    int pieces = 0;
    packed(longText()).read([&](std::string_view) { return ++pieces < 2; });
    EXPECT_EQ(pieces, 2);
}

TEST(LineSplitterTest, FindsTheSameLinesHoweverTheTextIsCut) {
    const std::string text = "first\n\nlonger than ten\n1234567890\nrest";
    for (std::size_t piece = 1; piece <= text.size(); ++piece) {
        SCOPED_TRACE(piece);
        Report::LineSplitter splitter(10);
        std::vector<std::string> lines;
        for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(std::min(piece, rest.size()))) {
            splitter.add(rest.substr(0, piece), [&](std::string_view line) { lines.emplace_back(line); });
        }
        EXPECT_THAT(lines, ElementsAre("first", "", "longer tha", "1234567890"));
        EXPECT_EQ(splitter.rest(), "rest");
        EXPECT_TRUE(splitter.cutLine());
    }
    Report::LineSplitter splitter(10);
    splitter.add("1234567890\n", [](std::string_view) {});
    EXPECT_FALSE(splitter.cutLine());
}

}  // namespace
}  // namespace ReportTest
