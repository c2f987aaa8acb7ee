#include <chrono>

#include <gtest/gtest.h>

#include "ElapsedTime.hpp"
#include "FakeTime.hpp"
#include "Probe.hpp"

using namespace std::chrono_literals;

namespace {

const Outcome elapsed{.status = 0, .out = "elapsed\n", .err = ""};

TEST(ElapsedTime, ExceedsNoLimitThatIsStillAhead) {
    const Korvel::ElapsedTime time;

    EXPECT_FALSE(time.exceeds(std::chrono::hours(1)));
}

TEST(ElapsedTime, ExceedsALimitThatIsPast) {
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(probe({"waitUntilElapsed", "50"}), elapsed);

    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
}

TEST(ElapsedTime, PassesIfTheWallClockIsStopped) {
    EXPECT_EQ(probe({"waitUntilElapsed", "50"}, atMoment("2030-01-01 00:00:00")), elapsed);
}

TEST(ElapsedTime, FollowsTheWallClockIfThatIsFaster) {
    constexpr const char* hour = "3600000";

    EXPECT_EQ(probe({"waitUntilElapsed", hour}, withWallClockAtSpeed(1000000)), elapsed);
}

}  // namespace
