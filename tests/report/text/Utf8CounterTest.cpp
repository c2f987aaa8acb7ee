#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Utf8Counter.hpp"

namespace ReportTest {
namespace {

TEST(Utf8CounterTest, CountsTheBytesThatAreNotUtf8HoweverTheTextIsCut) {
    const struct {
        std::string text;
        std::uint64_t invalid;
    } cases[] = {
        {"", 0},
        {"plain text that is longer than a word of the processor\n", 0},
        {"\xc3\xa4 \xe2\x82\xac \xf0\x9f\x98\x80 and more text", 0},
        {"\xff", 1},
        {"a\x80z", 1},
        {"\xc3", 1},
        {"\xc3\xc3\xa4", 1},
        {"\xe2\x82", 2},
        {"\xe2\x82z", 2},
        {"\xe2z\x82", 2},
        {"\xf0\x9f\x98", 3},
        {"\xf0\x9f\xe2\x82\xac", 2},
        {"\xc0\x80", 2},          // longer than necessary
        {"\xed\xa0\x80", 3},      // a surrogate
        {"\xf4\x90\x80\x80", 4},  // beyond U+10FFFF
        {"12345678\xff"
         "12345678\xff",
         2},
        {std::string("\0\0", 2), 0},
    };
    for (const auto& [text, invalid] : cases) {
        SCOPED_TRACE(text);
        for (std::size_t piece = 1; piece <= text.size() + 1; ++piece) {
            Report::Utf8Counter counter;
            for (std::string_view rest = text; !rest.empty();
                 rest.remove_prefix(std::min(piece, rest.size()))) {
                counter.add(rest.substr(0, piece));
            }
            counter.finish();
            EXPECT_EQ(counter.invalid(), invalid) << "in pieces of " << piece;
        }
    }
}

}  // namespace
}  // namespace ReportTest
