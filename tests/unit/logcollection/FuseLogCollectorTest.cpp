// The collected files of the state tree, and the history log.

#include <filesystem>

#include <gtest/gtest.h>

#include "Configuration.hpp"
#include "FuseCoverage.hpp"
#include "FuseLogCollector.hpp"
#include "Printed.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;
namespace Configuration = Korvel::Configuration;
using Korvel::FuseLogCollector;

namespace {

/// A selection of instances lasts until the process ends.
class FuseLogCollectorTest : public testing::Test {
protected:
    FuseLogCollectorTest() { fs::remove_all("/tmp/fuse"); }
    void TearDown() override { Korvel::setVerboseMode(false); }

    /// All files that both instances publish.
    static void publish(const std::string& instance) {
        const fs::path folder = fs::path("/tmp/fuse") / instance;
        for (const std::string file : {"tracing_on", "dispatcherCpu", "dmaStats", "fpBridgeStats"}) {
            writeFile(folder / file, file);
        }
    }

    /// The "Reading" lines of a collection, one for each source.
    static Printed sourcesOf(unsigned mask) {
        FuseLogCollector collector("/tmp/korvel", mask);
        Korvel::setVerboseMode(true);
        bool succeeded = false;
        Printed printed = printedBy([&] { succeeded = collector.collectLogs(false); });
        EXPECT_TRUE(succeeded);
        return printed;
    }

    static Printed reading(const std::vector<std::string>& sources) {
        Printed expected{.out = "Starting log collection from fuse file system...\n"};
        for (const std::string& source : sources) {
            expected.out += "Reading " + source + "...\n";
        }
        return expected;
    }
};

}  // namespace

TEST_F(FuseLogCollectorTest, CollectsOnlyTheHistoryLogForMask4) {
    Configuration::setDispatcherInstance(Configuration::IWF);
    Configuration::setDispatcherInstance(Configuration::SFN);
    publish("iwf");

    EXPECT_EQ(sourcesOf(FuseCoverage::log), reading({"HistoryLog"}));
}

TEST_F(FuseLogCollectorTest, CollectsTheHistoryLogWithoutAnyInstance) {
    EXPECT_EQ(sourcesOf(FuseCoverage::everything), reading({"HistoryLog"}));
}

TEST_F(FuseLogCollectorTest, CollectsBothInstancesInTheirOrder) {
    Configuration::setDispatcherInstance(Configuration::SFN);
    Configuration::setDispatcherInstance(Configuration::IWF);
    publish("iwf");
    publish("sfn");

    EXPECT_EQ(sourcesOf(FuseCoverage::everything),
              reading({"/tmp/fuse/iwf/tracing_on", "/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats",
                       "/tmp/fuse/sfn/tracing_on", "/tmp/fuse/sfn/dispatcherCpu", "/tmp/fuse/sfn/dmaStats",
                       "HistoryLog"}));
}

TEST_F(FuseLogCollectorTest, CollectsInformationAndStatisticsByTheirBits) {
    Configuration::setDispatcherInstance(Configuration::IWF);
    publish("iwf");

    EXPECT_EQ(sourcesOf(FuseCoverage::information), reading({"/tmp/fuse/iwf/tracing_on"}));
    EXPECT_EQ(
        sourcesOf(FuseCoverage::statistics),
        reading({"/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats", "/tmp/fuse/iwf/fpBridgeStats"}));
}

TEST_F(FuseLogCollectorTest, CollectsBridgeStatisticsOfIwfWithoutAnSfnDirectory) {
    Configuration::setDispatcherInstance(Configuration::IWF);
    publish("iwf");
    const Printed withBridge =
        reading({"/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats", "/tmp/fuse/iwf/fpBridgeStats"});
    const Printed withoutBridge = reading({"/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats"});

    EXPECT_EQ(sourcesOf(FuseCoverage::statistics), withBridge);

    writeFile("/tmp/fuse/sfn", "no directory");
    EXPECT_EQ(sourcesOf(FuseCoverage::statistics), withBridge);

    fs::remove("/tmp/fuse/sfn");
    fs::create_directory("/tmp/fuse/sfn");
    EXPECT_EQ(sourcesOf(FuseCoverage::statistics), withoutBridge);
}

TEST_F(FuseLogCollectorTest, NeverCollectsBridgeStatisticsIfOnlySfnIsSelected) {
    Configuration::setDispatcherInstance(Configuration::SFN);

    Printed expected = reading({"/tmp/fuse/sfn/dispatcherCpu", "/tmp/fuse/sfn/dmaStats"});
    expected.err =
        "Error while opening /tmp/fuse/sfn/dispatcherCpu\nError while opening /tmp/fuse/sfn/dmaStats\n";
    EXPECT_EQ(sourcesOf(FuseCoverage::statistics), expected);
}

TEST_F(FuseLogCollectorTest, ChoosesItsFilesWhenItIsConstructed) {
    Configuration::setDispatcherInstance(Configuration::IWF);
    publish("iwf");
    FuseLogCollector collector("/tmp/korvel", FuseCoverage::statistics);
    fs::create_directory("/tmp/fuse/sfn");
    Korvel::setVerboseMode(true);

    EXPECT_EQ(
        printedBy([&] { collector.collectLogs(false); }),
        reading({"/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats", "/tmp/fuse/iwf/fpBridgeStats"}));
}
