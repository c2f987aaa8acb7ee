#include <cstdarg>
#include <filesystem>

#include <gtest/gtest.h>

#include "Log.hpp"
#include "OutputCapture.hpp"
#include "SystemLog.hpp"
#include "VerboseMode.hpp"

using namespace Korvel;

namespace {

using Records = std::vector<std::string>;

constexpr int beyondAllLevels = 42;
constexpr int belowAllLevels = -1;

class Logf : public testing::Test {
protected:
    void SetUp() override { setVerboseMode(true); }
    void TearDown() override { setVerboseMode(false); }

    SystemLog systemLog;
    OutputCapture console;
};

TEST_F(Logf, WritesNothingOutsideVerboseMode) {
    setVerboseMode(false);

    logf(Korvel::logError, "port %d", 7);

    EXPECT_EQ(systemLog.records(), Records{});
    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Logf, SendsTheFormattedTextAndPrintsABareLineEnd) {
    logf(Korvel::logInformation, "port %d of %s", 7, "eth0");

    EXPECT_EQ(systemLog.records(), Records{"<14>TIME common_test: port 7 of eth0"});
    EXPECT_EQ(console.out(), "\n");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Logf, SendsEachLevelWithItsPriority) {
    logf(Korvel::logError, "error");
    logf(Korvel::logWarning, "warning");
    logf(Korvel::logInformation, "information");
    logf(Korvel::logDebug, "debug");
    logf(beyondAllLevels, "beyond");

    EXPECT_EQ(systemLog.records(), (Records{
                                       "<11>TIME common_test: error",
                                       "<12>TIME common_test: warning",
                                       "<14>TIME common_test: information",
                                       "<15>TIME common_test: debug",
                                       "<15>TIME common_test: beyond",
                                   }));
    EXPECT_EQ(console.out(), "\n\n\n\n\n");
}

TEST_F(Logf, PrintsItsLineEndWithoutASystemLog) {
    std::filesystem::remove("/dev/log");

    logf(Korvel::logError, "to nobody");

    EXPECT_EQ(console.out(), "\n");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Logf, LosesARecordIfTheSystemLogIsFull) {
    systemLog.fill();

    logf(Korvel::logError, "lost");

    EXPECT_EQ(systemLog.records(), Records{});
    EXPECT_EQ(console.out(), "\n");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Logf, SendsAgainOnceTheSystemLogHasRoom) {
    systemLog.fill();
    logf(Korvel::logError, "lost");
    systemLog.records();

    logf(Korvel::logError, "kept");

    EXPECT_EQ(systemLog.records(), Records{"<11>TIME common_test: kept"});
}

/// Only the record, in any mode.
class LogToSystem : public testing::Test {
protected:
    static void log(int level, const char* format, ...) __attribute__((format(printf, 2, 3))) {
        std::va_list arguments;
        va_start(arguments, format);
        logToSystem(level, format, arguments);
        va_end(arguments);
    }

    SystemLog systemLog;
    OutputCapture console;
};

TEST_F(LogToSystem, SendsTheFormattedTextWithItsPriorityAndPrintsNothing) {
    log(Korvel::logError, "port %d of %s", 7, "eth0");
    log(Korvel::logInformation, "nothing but text");

    EXPECT_EQ(systemLog.records(), (Records{
                                       "<11>TIME common_test: port 7 of eth0",
                                       "<14>TIME common_test: nothing but text",
                                   }));
    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "");
}

TEST_F(LogToSystem, PrintsNothingEvenInVerboseMode) {
    setVerboseMode(true);

    log(Korvel::logWarning, "port %d", 7);
    setVerboseMode(false);

    EXPECT_EQ(systemLog.records(), Records{"<12>TIME common_test: port 7"});
    EXPECT_EQ(console.out(), "");
}

TEST_F(LogToSystem, LosesARecordIfTheSystemLogIsFull) {
    systemLog.fill();

    log(Korvel::logError, "lost");
    systemLog.records();
    log(Korvel::logError, "kept");

    EXPECT_EQ(systemLog.records(), Records{"<11>TIME common_test: kept"});
    EXPECT_EQ(console.err(), "");
}

TEST(LogLvlToPriority, MapsEveryLevel) {
    EXPECT_EQ(logLvlToPriority(Korvel::logError), 3);
    EXPECT_EQ(logLvlToPriority(Korvel::logWarning), 4);
    EXPECT_EQ(logLvlToPriority(Korvel::logInformation), 6);
    EXPECT_EQ(logLvlToPriority(Korvel::logDebug), 7);
    EXPECT_EQ(logLvlToPriority(0), 3);
    EXPECT_EQ(logLvlToPriority(1), 4);
    EXPECT_EQ(logLvlToPriority(2), 6);
    EXPECT_EQ(logLvlToPriority(beyondAllLevels), 7);
    EXPECT_EQ(logLvlToPriority(belowAllLevels), 7);
}

}  // namespace
