#include "ConfigFixture.hpp"
#include "IsolatedCpus.hpp"
#include "Probe.hpp"

// A board whose kernel command line ends with isolcpus=1,2,3.

namespace {

using Korvel::getIsolatedCpuMask;
using Records = std::vector<std::string>;

class L2SCTBoard : public ConfigFixture {};

TEST_F(L2SCTBoard, IsDetectedInTheKernelCommandLine) {
    EXPECT_TRUE(config().isL2SCTEnv());
    EXPECT_EQ(records(), Records{"information: Detected L2 SCT environment in isolcpus"});
}

TEST_F(L2SCTBoard, IsDetectedAfterItWasForced) {
    EXPECT_TRUE(configOf("L2SCTEnv=1\n").isL2SCTEnv());
    EXPECT_EQ(records(), (Records{
                             "information: Opening '/rom/private/fpdispatcher.conf' file",
                             "debug: Adding config entry [L2SCTEnv, 1]",
                             "information: L2 SCT environment forced by config file",
                             "information: Detected L2 SCT environment in isolcpus",
                         }));
}

TEST_F(L2SCTBoard, IsDetectedEvenIfTheFileDisablesIt) {
    EXPECT_TRUE(configOf("L2SCTEnv=0\n").isL2SCTEnv());
}

TEST_F(L2SCTBoard, IsDetectedIfItIsSecured) {
    secureTheBoard();

    EXPECT_TRUE(config().isL2SCTEnv());
}

TEST_F(L2SCTBoard, HasAMaskOfCpus1To3) {
    EXPECT_EQ(getIsolatedCpuMask(), 14U);
}

/// The same board, but the pipe to its command line cannot be opened because no child can be started.
class L2SCTBoardWithoutPipe : public testing::Test {
protected:
    /// The masks of two queries. `which` selects the children that cannot be started, as in strace's "when".
    static std::string masksWithoutChild(const std::string& which) {
        const Outcome outcome =
            probeInjected({.faults = {"clone,clone3,?vfork,?fork:error=EAGAIN:when=" + which}},
                          {"getIsolatedCpuMaskTwice"});
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
};

TEST_F(L2SCTBoardWithoutPipe, HasAnEmptyMask) {
    EXPECT_EQ(masksWithoutChild("1+"), "0 0\n");
}

TEST_F(L2SCTBoardWithoutPipe, RunsTheQueryAgain) {
    EXPECT_EQ(masksWithoutChild("1"), "0 14\n");
}

TEST_F(L2SCTBoardWithoutPipe, DoesNotRunTheQueryAgainAfterAnAnswer) {
    EXPECT_EQ(masksWithoutChild("2+"), "14 14\n");
}

}  // namespace
