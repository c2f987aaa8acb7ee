#include <csignal>

#include <gtest/gtest.h>

#include "Invariant.hpp"
#include "Printed.hpp"
#include "Probe.hpp"

namespace {

TEST(RequireInvariant, PrintsNothingIfTheInvariantHolds) {
    EXPECT_EQ(printedBy([] { Korvel::requireInvariant(true, "1 == 1", "InvariantTest"); }), Printed{});
}

TEST(RequireInvariant, AbortsAfterAllEarlierOutput) {
    const Outcome together = probe({"breakInvariant"}, {.together = true});

    EXPECT_EQ(together.status, 128 + SIGABRT);
    EXPECT_EQ(together.out, "printed before\nProbeMain: Assertion \"nullptr != client\" failed.\n");
}

TEST(RequireInvariant, NamesTheBrokenInvariantOnStandardError) {
    EXPECT_EQ(probe({"breakInvariant"}),
              (Outcome{.status = 128 + SIGABRT,
                       .out = "printed before\n",
                       .err = "ProbeMain: Assertion \"nullptr != client\" failed.\n"}));
}

}  // namespace
