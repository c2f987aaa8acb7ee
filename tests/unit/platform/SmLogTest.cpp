#include <cerrno>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LogFixture.hpp"
#include "LogRing.hpp"

namespace {

using HostBoard::LogRing;
using testing::ElementsAre;
using testing::IsEmpty;

class SmLogTest : public LogFixture {};

TEST_F(SmLogTest, HasOneClientForEachNameInAProcess) {
    SmLog* const other = SmLog::getClientInstance((name + "_other").c_str(), 3);

    EXPECT_EQ(SmLog::getClientInstance(name.c_str(), 3), &client());
    EXPECT_EQ(SmLog::getClientInstance(name.c_str(), 5), &client());
    EXPECT_NE(other, &client());
    EXPECT_NE(other, nullptr);
    std::remove((path + "_other").c_str());
}

TEST_F(SmLogTest, HasNoClientForAnInvalidFileName) {
    EXPECT_EQ(SmLog::getClientInstance(nullptr, 3), nullptr);
    for (const std::string& bad :
         {std::string(), std::string("."), std::string(".."), std::string("/log"), std::string("a/log"),
          std::string("log/"), std::string(256, 'x'), std::string(100000, 'x')}) {
        EXPECT_EQ(SmLog::getClientInstance(bad.c_str(), 3), nullptr) << bad.substr(0, 300);
    }
}

TEST_F(SmLogTest, ReturnsTheEntriesInTheOrderOfWriting) {
    client().write(1, "First", "one");
    client().write(2, "Second", "%s and %d", "two", 2);

    EXPECT_THAT(keptTexts(), ElementsAre("one", "two and 2"));
}

TEST_F(SmLogTest, ContinuesAfterTheLastRead) {
    writeNumbered(0, 3);
    const Reading first = read(0);
    writeNumbered(3, 2);

    const Reading second = read(first.end);
    const Reading third = read(second.end);

    EXPECT_EQ(textsOf(second.text), numbered(3, 2));
    EXPECT_EQ(third.text, "");
    EXPECT_EQ(third.end, second.end);
}

TEST_F(SmLogTest, CopiesOnlyWholeEntriesThatFitWithTheClosingZero) {
    writeNumbered(0, 3);
    const std::string all = read(0).text;
    const std::size_t line = all.find('\n') + 1;

    for (unsigned size = 1; size <= all.size() + 1; ++size) {
        const std::size_t fitting = (size - 1) / line * line;
        const Reading part = read(0, size);
        EXPECT_EQ(part.text, all.substr(0, fitting)) << size;
        EXPECT_EQ(part.text + read(part.end).text, all) << size;
    }
}

TEST_F(SmLogTest, StaysWithinTheBuffer) {
    writeNumbered(0, 2);
    const auto line = static_cast<unsigned>(read(0).text.size()) / 2;
    std::string buffer(100, '#');

    client().read(buffer.data(), line + 1, 0, 0, 5);

    EXPECT_EQ(buffer.substr(line - 1, 2), std::string("\n\0", 2));
    EXPECT_EQ(buffer.substr(line + 1), std::string(buffer.size() - line - 1, '#'));
}

TEST_F(SmLogTest, KeepsThePositionIfTheNextEntryDoesNotFit) {
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    writeNumbered(1, 1);

    const Reading none = read(before, 10);

    EXPECT_EQ(none.text, "");
    EXPECT_EQ(none.end, before);
    EXPECT_EQ(textsOf(read(none.end).text), numbered(1, 1));
}

TEST_F(SmLogTest, WritesNothingToABufferWithoutRoom) {
    writeNumbered(0, 1);
    char untouched = '#';

    const unsigned oldest = client().read(&untouched, 0, 0, 0, 5);

    EXPECT_EQ(untouched, '#');
    EXPECT_EQ(client().read(nullptr, wholeLog, 0, 0, 5), oldest);
    EXPECT_EQ(textsOf(read(oldest).text), numbered(0, 1));
}

TEST_F(SmLogTest, ReturnsAllEntriesInOneReadOfTwoMebibytes) {
    constexpr int written = 70000;
    writeNumbered(0, written);

    const Reading all = read(0);

    const std::size_t longestLine = all.text.size() - all.text.rfind('\n', all.text.size() - 2);
    EXPECT_LE(all.text.size(), LogRing::capacity);
    EXPECT_GT(all.text.size(), LogRing::capacity - longestLine);
    EXPECT_EQ(read(all.end).text, "");
    const std::vector<std::string> texts = textsOf(all.text);
    const int kept = static_cast<int>(texts.size());
    EXPECT_TRUE(texts == numbered(written - kept, kept));
}

TEST_F(SmLogTest, KeepsItsEntriesWhole) {
    // Lengths without a common factor with the ring's length, so that each part of a line crosses the ring's
    // edge once.
    const std::string filler(LogRing::maxEntry, 'f');
    for (int i = 0; i < 5000; ++i) {
        client().write(0, "Test", "%d %.*s", i, i * 37 % 4000, filler.c_str());
    }

    const std::vector<std::string> texts = keptTexts();

    int number = 5000 - static_cast<int>(texts.size());
    EXPECT_GT(number, 0);
    for (const std::string& text : texts) {
        const auto length = static_cast<std::size_t>(number * 37 % 4000);
        ASSERT_EQ(text, std::to_string(number) + " " + filler.substr(0, length));
        ++number;
    }
}

TEST_F(SmLogTest, DoesNotChangeErrnoWhenItWrites) {
    SmLog& log = client();

    errno = ENOTTY;
    log.write(0, "Test", "text");

    EXPECT_EQ(errno, ENOTTY);
}

TEST_F(SmLogTest, IsEmptyAtFirst) {
    EXPECT_THAT(keptTexts(), IsEmpty());
}

}  // namespace
