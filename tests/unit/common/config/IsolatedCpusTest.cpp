#include <gtest/gtest.h>

#include "IsolatedCpus.hpp"
#include "OutputCapture.hpp"

using Korvel::getIsolatedCpuMask;
using Korvel::parseIsolatedCpus;

namespace {

TEST(ParseIsolatedCpus, SetsABitForEachCpuThatIsNamed) {
    const struct {
        std::string commandLine;
        unsigned mask;
    } cases[] = {
        {"isolcpus=0", 1},        {"isolcpus=3", 8},      {"isolcpus=1,2,3", 14},
        {"isolcpus=0,1,2,3", 15}, {"isolcpus=3,1,3", 10}, {"root=/dev/ram0 isolcpus=1,2,3", 14},
    };
    for (const auto& [commandLine, mask] : cases) {
        SCOPED_TRACE(commandLine);
        EXPECT_EQ(parseIsolatedCpus(commandLine), mask);
    }
}

TEST(ParseIsolatedCpus, AcceptsOnlySingleDigitsUpToThree) {
    const struct {
        std::string commandLine;
        unsigned mask;
    } cases[] = {
        {"isolcpus=1-3", 0},
        {"isolcpus=1-2,3", 8},
        {"isolcpus=4,9,10,a", 0},
        {"isolcpus=+,-,2", 4},
        {"isolcpus=,1,,2,", 6},
        {"isolcpus= 1", 0},
        {"isolcpus=1,2,3 quiet", 6},
        {"isolcpus=0,1 loops=0,2,3", 13},
        {"isolcpus=", 0},
    };
    for (const auto& [commandLine, mask] : cases) {
        SCOPED_TRACE(commandLine);
        EXPECT_EQ(parseIsolatedCpus(commandLine), mask);
    }
}

TEST(ParseIsolatedCpus, IsZeroWithoutTheOption) {
    EXPECT_EQ(parseIsolatedCpus(""), 0U);
    EXPECT_EQ(parseIsolatedCpus("root=/dev/ram0 isolcpus 1,2,3"), 0U);
}

TEST(GetIsolatedCpuMask, IsZeroOnABoardWithoutIsolatedCpus) {
    OutputCapture console;

    EXPECT_EQ(getIsolatedCpuMask(), 0U);
    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "");
}

}  // namespace
