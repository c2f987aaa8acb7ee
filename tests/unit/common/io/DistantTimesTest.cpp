#include <gtest/gtest.h>

#include "FakeTime.hpp"
#include "Probe.hpp"
#include "SmLogReader.hpp"

namespace {

/// Times after January 2038, the end of 32-bit time stamps.
class DistantTime : public testing::Test {
protected:
    static Outcome probeThen(std::vector<std::string> arguments) {
        return probe(std::move(arguments), atMoment("2040-02-29 12:34:56"));
    }

    static Outcome printed(const std::string& text) { return {.status = 0, .out = text + "\n", .err = ""}; }
};

TEST_F(DistantTime, IsWrittenInNames) {
    EXPECT_EQ(probeThen({"getTimestamp"}), printed("400229_123456"));
}

TEST_F(DistantTime, IsWrittenForPeople) {
    EXPECT_EQ(probeThen({"getCurrentDateTime"}), printed("40-02-29 12:34:56"));
}

TEST_F(DistantTime, IsMeasuredInWholeSeconds) {
    EXPECT_EQ(probeThen({"wallClockNow"}), printed("2214131696"));
}

TEST_F(DistantTime, IsWrittenInEntriesOfSharedMemoryLogs) {
    EXPECT_EQ(probeThen({"writeSmLog", "test_log", "text"}), printed("written"));

    EXPECT_EQ(Korvel::readSmLog("test_log", 4096, 0), "2040-02-29T12:34:56.000000Z 6 Test: text\n");
}

}  // namespace
