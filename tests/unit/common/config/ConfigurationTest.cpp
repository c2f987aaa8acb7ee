#include <vector>

#include <gtest/gtest.h>

#include "Configuration.hpp"

namespace Korvel::Configuration {
namespace {

class InstanceSelection : public testing::Test {
protected:
    static std::vector<DispatcherInstance> selected() { return {getInstanceBegin(), getInstanceEnd()}; }
};

TEST_F(InstanceSelection, IsEmptyAtStart) {
    EXPECT_EQ(getInstanceCount(), 0U);
    EXPECT_EQ(selected(), std::vector<DispatcherInstance>{});
}

TEST_F(InstanceSelection, IteratesIWFFirstAfterSFNWasSelectedFirst) {
    setDispatcherInstance(SFN);
    setDispatcherInstance(IWF);

    EXPECT_EQ(getInstanceCount(), 2U);
    EXPECT_EQ(selected(), (std::vector{IWF, SFN}));
}

TEST_F(InstanceSelection, HoldsAnInstanceOnlyOnce) {
    setDispatcherInstance(SFN);
    setDispatcherInstance(SFN);

    EXPECT_EQ(getInstanceCount(), 1U);
    EXPECT_EQ(selected(), std::vector{SFN});
}

TEST(DispInstanceToString, NamesTheInstances) {
    EXPECT_EQ(dispInstanceToString(IWF), "iwf");
    EXPECT_EQ(dispInstanceToString(SFN), "sfn");
    EXPECT_EQ(dispInstanceToString(DispatcherInstance{0}), "iwf");
    EXPECT_EQ(dispInstanceToString(DispatcherInstance{1}), "sfn");
}

TEST(DispInstanceToString, ReturnsUnknownForAnyOtherValue) {
    EXPECT_EQ(dispInstanceToString(DispatcherInstance{2}), "unknown");
    EXPECT_EQ(dispInstanceToString(DispatcherInstance{0xffffffff}), "unknown");
}

TEST(GetConfig, ReturnsTheParametersOfEachInstance) {
    const struct {
        DispatcherInstance instance;
        std::uint16_t localPort;
        std::uint16_t dispatcherPort;
    } cases[] = {{IWF, 7778, 7777}, {SFN, 8778, 8777}};
    for (const auto& [instance, localPort, dispatcherPort] : cases) {
        SCOPED_TRACE(instance);
        const Korvel::Configuration::Config& record = getConfig(instance);
        EXPECT_EQ(record.localPort, localPort);
        EXPECT_EQ(record.dispatcherPort, dispatcherPort);
        EXPECT_EQ(record.dispatcherAddress, "127.0.0.1");
        EXPECT_EQ(record.receiveBufferSize, 513U);
        EXPECT_EQ(record.endOfMessageMarker, "<MMI_END_OF_MSG>");
    }
}

TEST(CollectLogsOnExit, IsOffUntilItIsSet) {
    EXPECT_FALSE(getCollectLogsOnExit());

    setCollectLogsOnExit();

    EXPECT_TRUE(getCollectLogsOnExit());
}

}  // namespace
}  // namespace Korvel::Configuration
