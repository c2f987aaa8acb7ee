#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "SignalStorm.hpp"
#include "SystemLog.hpp"
#include "SystemLogRoom.hpp"

using Korvel::systemLogHasRoom;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class SystemLogRoom : public testing::Test {
protected:
    SystemLog systemLog;
};

TEST_F(SystemLogRoom, ExistsInALogThatIsRead) {
    EXPECT_TRUE(systemLogHasRoom());
}

TEST_F(SystemLogRoom, IsAssumedWithoutALog) {
    std::filesystem::remove("/dev/log");

    EXPECT_TRUE(systemLogHasRoom());
}

TEST_F(SystemLogRoom, IsAwaitedForASecondDespiteSignals) {
    systemLog.fill();
    const SignalStorm storm;
    const auto begin = steady_clock::now();

    EXPECT_FALSE(systemLogHasRoom());

    EXPECT_GE(steady_clock::now() - begin, 1s);
    EXPECT_GT(SignalStorm::count(), 0);
}

TEST_F(SystemLogRoom, IsAwaitedOnce) {
    systemLog.fill();

    // A second for each of them would exceed the test's time-out.
    for (int i = 0; i < 500; ++i) {
        EXPECT_FALSE(systemLogHasRoom());
    }
}

TEST_F(SystemLogRoom, ExistsAgainOnceTheLogIsRead) {
    systemLog.fill();
    EXPECT_FALSE(systemLogHasRoom());

    systemLog.records();

    EXPECT_TRUE(systemLogHasRoom());
}

}  // namespace
