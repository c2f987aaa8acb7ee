#include <filesystem>

#include <gtest/gtest.h>

#include "Probe.hpp"
#include "SmLogReader.hpp"
#include "TestFiles.hpp"

using Korvel::readSmLog;

namespace {

namespace fs = std::filesystem;

constexpr unsigned wholeLog = 2U << 20;

/// A shared-memory log that the tests write to, or that cannot be opened.
class ReadSmLog : public testing::Test {
protected:
    static constexpr const char* name = "test_log";

    static void givenAnEntry(const std::string& text) {
        SmLog::getClientInstance(name, 3)->write(6, "Test", "%s", text.c_str());
    }

    /// The texts of the log's entries, without time, level and tag.
    static std::vector<std::string> textsOf(const std::string& log) {
        constexpr std::string_view tag = " 6 Test: ";
        std::vector<std::string> texts;
        std::istringstream lines(log);
        for (std::string line; std::getline(lines, line);) {
            texts.push_back(line.substr(line.find(tag) + tag.size()));
        }
        return texts;
    }

    static void givenNoSharedMemory() { fs::permissions("/dev/shm", fs::perms::none); }
};

TEST_F(ReadSmLog, ReturnsTheEntriesOfTheLog) {
    givenAnEntry("first");
    givenAnEntry("second");

    EXPECT_EQ(textsOf(readSmLog(name, wholeLog, 0)), (std::vector<std::string>{"first", "second"}));
}

TEST_F(ReadSmLog, ReturnsTheSameEntriesAgain) {
    givenAnEntry("first");

    EXPECT_EQ(readSmLog(name, wholeLog, 0), readSmLog(name, wholeLog, 0));
}

TEST_F(ReadSmLog, ReturnsAnEmptyTextForAnEmptyLog) {
    EXPECT_EQ(readSmLog(name, wholeLog, 0), "");
}

TEST_F(ReadSmLog, ReturnsTheOldestEntriesThatFit) {
    givenAnEntry("first");
    const std::string first = readSmLog(name, wholeLog, 0);
    givenAnEntry("second");

    EXPECT_EQ(readSmLog(name, static_cast<unsigned>(first.size() + 1), 0), first);
    EXPECT_EQ(readSmLog(name, static_cast<unsigned>(first.size()), 0), "");
}

TEST_F(ReadSmLog, ReturnsAnEmptyTextForASizeOfZeroOrOne) {
    givenAnEntry("first");

    EXPECT_EQ(readSmLog(name, 1, 0), "");
    EXPECT_EQ(readSmLog(name, 0, 0), "");
}

TEST_F(ReadSmLog, ReturnsAnEmptyTextIfTheLogCannotBeOpened) {
    givenNoSharedMemory();

    EXPECT_EQ(readSmLog(name, wholeLog, 0), "");
}

/// A log library that prints its calls.
class RecordingLibrary : public testing::Test {
protected:
    static std::string answerTo(const std::string& size) {
        const Outcome outcome = probe({"readSmLog", "some_log", size, "2"},
                                      {.environment = {{"LD_LIBRARY_PATH", besideThisProgram("recording")}}});
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
};

TEST_F(RecordingLibrary, GetsTheRequiredArgumentsAndItsTextEndsAtTheFirstZeroByte) {
    EXPECT_EQ(answerTo("100"),
              "client of some_log, app 3\n"
              "read 100 zero bytes, app 2, start 0, mode 5\n"
              "before the zero\n");
}

TEST_F(RecordingLibrary, MayFillTheWholeBuffer) {
    EXPECT_EQ(answerTo("6"),
              "client of some_log, app 3\n"
              "read 6 zero bytes, app 2, start 0, mode 5\n"
              "before\n");
}

}  // namespace
