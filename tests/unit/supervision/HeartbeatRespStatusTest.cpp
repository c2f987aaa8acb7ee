#include <gtest/gtest.h>

#include "HeartbeatRespStatus.hpp"

using Korvel::HeartbeatRespStatus;

TEST(HeartbeatRespStatusTest, NamesEachOfItsValues) {
    EXPECT_EQ(HeartbeatRespStatus::toString(HeartbeatRespStatus::Status{0}), "NOT_RECEIVED");
    EXPECT_EQ(HeartbeatRespStatus::toString(HeartbeatRespStatus::Status{1}), "OK");
    EXPECT_EQ(HeartbeatRespStatus::toString(HeartbeatRespStatus::Status{2}), "ERROR");
}

TEST(HeartbeatRespStatusTest, HasNoNameForAnythingElse) {
    EXPECT_EQ(HeartbeatRespStatus::toString(HeartbeatRespStatus::Status{3}), "");
    EXPECT_EQ(HeartbeatRespStatus::toString(HeartbeatRespStatus::Status{0xffffffff}), "");
}

TEST(HeartbeatRespStatusTest, StartsWithNothingReceived) {
    const HeartbeatRespStatus status;

    EXPECT_EQ(status.netfpProxy, HeartbeatRespStatus::NOT_RECEIVED);
    EXPECT_EQ(status.iwf, HeartbeatRespStatus::NOT_RECEIVED);
    EXPECT_EQ(status.sfn, HeartbeatRespStatus::NOT_RECEIVED);
}
