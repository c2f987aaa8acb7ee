#include <gtest/gtest.h>

#include "VerboseMode.hpp"

namespace {

TEST(VerboseMode, IsOffAtStart) {
    EXPECT_FALSE(Korvel::isVerboseMode());
}

TEST(VerboseMode, CanBeSwitchedOnAndOff) {
    Korvel::setVerboseMode(true);
    EXPECT_TRUE(Korvel::isVerboseMode());

    Korvel::setVerboseMode(false);
    EXPECT_FALSE(Korvel::isVerboseMode());
}

}  // namespace
