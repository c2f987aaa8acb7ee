#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "SafeText.hpp"

using namespace std::string_view_literals;

namespace {

struct Example {
    std::string_view bytes;
    std::string_view shown;
};

TEST(TextForATerminal, ShowsOrdinaryTextUnchanged) {
    for (const std::string_view text :
         {""sv, "heap used  4096"sv, "a\tb"sv, "Zürich €"sv, "\U0001F4E6"sv, "C:\\x1b"sv}) {
        EXPECT_EQ(Report::forTerminal(text), text);
    }
}

TEST(TextForATerminal, ShowsControlCharactersAsEscapes) {
    const std::vector<Example> examples{
        {"\x1b[31mred\x1b[0m", R"(\x1b[31mred\x1b[0m)"},
        {"\x1b]0;title\x07", R"(\x1b]0;title\x07)"},
        {"\0"sv, R"(\x00)"},
        {"over\rwritten", R"(over\x0dwritten)"},
        {"gone\x7f\b", R"(gone\x7f\x08)"},
        {"\xC2\x9B"
         "31m",
         R"(\x9b31m)"},  // CSI as one character
    };
    for (const auto& [bytes, shown] : examples) {
        EXPECT_EQ(Report::forTerminal(bytes), shown);
    }
}

TEST(TextForATerminal, KeepsLineFeedsOnlyIfAsked) {
    EXPECT_EQ(Report::forTerminal("a\nb"), R"(a\x0ab)");
    EXPECT_EQ(Report::forTerminal("a\nb", true), "a\nb");
}

TEST(TextForATerminal, ShowsCharactersThatReorderTextAsEscapes) {
    const std::vector<Example> examples{
        {"\u202Egnp.exe",  // NOLINT(misc-misleading-bidirectional)
         R"(\u202egnp.exe)"},
        {"\u2066x\u2069", R"(\u2066x\u2069)"},
        {"\u200F", R"(\u200f)"},
        {"\u061C", R"(\u061c)"},
        {"a\u2028b", R"(a\u2028b)"},
    };
    for (const auto& [bytes, shown] : examples) {
        EXPECT_EQ(Report::forTerminal(bytes), shown);
    }
}

TEST(TextForATerminal, ShowsEachByteThatIsNotUtf8AsAnEscape) {
    const std::vector<Example> examples{
        {"\xFF"
         "a",
         R"(\xffa)"},
        {"\xC3", R"(\xc3)"},                           // cut
        {"\xC3(", R"(\xc3()"},                         // no continuation
        {"\xC0\xAF", R"(\xc0\xaf)"},                   // overlong
        {"\xED\xA0\x80", R"(\xed\xa0\x80)"},           // surrogate
        {"\xF4\x90\x80\x80", R"(\xf4\x90\x80\x80)"},   // beyond U+10FFFF
        {"\xE2\x82\xE2\x82\xAC", "\\xe2\\x82\u20AC"},  // cut, then whole
    };
    for (const auto& [bytes, shown] : examples) {
        EXPECT_EQ(Report::forTerminal(bytes), shown);
    }
}

}  // namespace
