#include <cstdarg>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LogEntry.hpp"

namespace {

using HostBoard::LogEntry;
using HostBoard::LogRing;
using testing::MatchesRegex;

__attribute__((format(printf, 3, 4))) std::string entry(int level, const char* tag, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const LogEntry made(level, tag, format, arguments);
    va_end(arguments);
    return std::string(made.line());
}

/// The entry without its time.
std::string behindTime(const std::string& line) {
    return line.substr(line.find(' ') + 1);
}

TEST(LogEntryTest, BeginsWithItsTimeInUtc) {
    EXPECT_THAT(
        entry(0, "Tag", "text"),
        MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{6}Z 0 Tag: text\n"));
}

TEST(LogEntryTest, HasLevelTagAndFormattedText) {
    EXPECT_EQ(behindTime(entry(-3, "Room", "port %d is %s", 7, "up")), "-3 Room: port 7 is up\n");
}

TEST(LogEntryTest, IsOneLineForAnyText) {
    EXPECT_EQ(behindTime(entry(0, "Tag", "one\ntwo\n\nthree")), "0 Tag: one two  three\n");
    EXPECT_EQ(behindTime(entry(0, "Tag", "with line ends\n\n")), "0 Tag: with line ends\n");
    EXPECT_EQ(behindTime(entry(0, "Tag", "zero%cbyte", 0)), "0 Tag: zero byte\n");
    EXPECT_EQ(behindTime(entry(0, "T\nag", "text")), "0 T ag: text\n");
}

TEST(LogEntryTest, TreatsNullAsEmpty) {
    const char* const missing = nullptr;
    EXPECT_EQ(behindTime(entry(0, missing, "text")), "0 : text\n");
    EXPECT_EQ(behindTime(entry(0, "Tag", missing)), "0 Tag: \n");
}

TEST(LogEntryTest, IsCutAtItsLargestSizeWithALineEnd) {
    const std::string prefix = entry(0, "Tag", "%s", "");
    const std::size_t fitting = LogRing::maxEntry - prefix.size();

    EXPECT_EQ(behindTime(entry(0, "Tag", "%s", std::string(fitting, 'x').c_str())),
              "0 Tag: " + std::string(fitting, 'x') + "\n");
    EXPECT_EQ(behindTime(entry(0, "Tag", "%s", std::string(fitting + 1, 'x').c_str())),
              "0 Tag: " + std::string(fitting, 'x') + "\n");
    EXPECT_EQ(entry(0, std::string(10000, 't').c_str(), "text").size(), LogRing::maxEntry);
}

}  // namespace
