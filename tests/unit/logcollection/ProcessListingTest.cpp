#include <gtest/gtest.h>

#include "ProcessListing.hpp"

using Korvel::parseProcessListing;
using Korvel::ProcessIds;

namespace {

TEST(ProcessListing, HasTheSecondColumnOfTheLastLineWithTheName) {
    EXPECT_EQ(
        parseProcessListing("root 12 netfp_proxy\nroot 34 netfp_proxy -d\nroot 56 other\n", {"netfp_proxy"}),
        (ProcessIds{{"netfp_proxy", 34}}));
}

TEST(ProcessListing, HasZeroIfTheColumnIsNoNumber) {
    EXPECT_EQ(parseProcessListing("root 12 netfp_proxy\nroot none netfp_proxy\n", {"netfp_proxy"}),
              (ProcessIds{{"netfp_proxy", 0}}));
}

TEST(ProcessListing, HasNothingForANameThatIsMissing) {
    EXPECT_EQ(parseProcessListing("root 12 netfp_proxy\n", {"netfp_server"}), ProcessIds{});
}

}  // namespace
