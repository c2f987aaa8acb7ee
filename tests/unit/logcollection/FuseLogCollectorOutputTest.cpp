// The outputs for the state files and the history log.

#include <filesystem>
#include <optional>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "BoardCommand.hpp"
#include "Configuration.hpp"
#include "FuseCoverage.hpp"
#include "FuseLogCollector.hpp"
#include "HeaderLine.hpp"
#include "Printed.hpp"
#include "SharedLogText.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
namespace Configuration = Korvel::Configuration;
using Korvel::FuseLogCollector;

namespace {

const std::string outFolder = "/tmp/korvel/fuse";

/// Only the IWF instance is selected, on a board without the other.
class FuseLogCollectorOutputTest : public testing::Test {
protected:
    FuseLogCollectorOutputTest() {
        Configuration::setDispatcherInstance(Configuration::IWF);
        fs::remove_all("/tmp/fuse");
        fs::remove_all("/tmp/korvel");
        for (const std::string file : {"tracing_on", "dispatcherCpu", "dmaStats", "fpBridgeStats"}) {
            writeFile("/tmp/fuse/iwf/" + file, "state of " + file);
        }
    }

    Printed collect(unsigned mask) {
        collector.emplace("/tmp/korvel", mask);
        return printedBy([&] { collector->collectLogs(false); });
    }

    Printed show() {
        return printedBy([&] { collector->printOnConsole(); });
    }

    Printed dump() {
        return printedBy([&] { collector->dumpToFiles(); });
    }

    std::optional<FuseLogCollector> collector;
};

}  // namespace

TEST_F(FuseLogCollectorOutputTest, ShowsEachSourceUnderItsHeader) {
    const std::string history = writeSharedLog("dispatcher_log_memory", {"first", "second"});
    EXPECT_EQ(collect(FuseCoverage::everything), Printed{});

    EXPECT_EQ(show(), (Printed{.out = headerLine("Tracing Enabled") + "state of tracing_on\n" +
                                      headerLine("Dispatcher CPU") + "state of dispatcherCpu\n" +
                                      headerLine("Dma Service Statistics") + "state of dmaStats\n" +
                                      headerLine("FPBridge Statistics") + "state of fpBridgeStats\n" +
                                      headerLine("NETFP LOG") + history + "\n"}));
}

TEST_F(FuseLogCollectorOutputTest, WritesEachSourceUnchangedToItsFile) {
    const std::string history = writeSharedLog("dispatcher_log_memory", {"first", "second"});
    collect(FuseCoverage::everything);

    EXPECT_EQ(dump(), Printed{});

    EXPECT_EQ(filesBelow(outFolder),
              (std::vector<std::string>{"HistoryLog.log", "iwf/dispatcherCpu.log", "iwf/dmaStats.log",
                                        "iwf/fpBridgeStats.log", "iwf/tracing_on.log"}));
    EXPECT_EQ(contentOfFile(outFolder + "/HistoryLog.log"), history);
    EXPECT_EQ(contentOfFile(outFolder + "/iwf/dispatcherCpu.log"), "state of dispatcherCpu");
    EXPECT_EQ(contentOfFile(outFolder + "/iwf/tracing_on.log"), "state of tracing_on");
}

TEST_F(FuseLogCollectorOutputTest, KeepsTheTextFromTheTimeOfCollection) {
    collect(FuseCoverage::information);
    writeFile("/tmp/fuse/iwf/tracing_on", "changed");

    EXPECT_EQ(show(), (Printed{.out = headerLine("Tracing Enabled") + "state of tracing_on\n"}));
    EXPECT_EQ(dump(), Printed{});
    EXPECT_EQ(contentOfFile(outFolder + "/iwf/tracing_on.log"), "state of tracing_on");
}

TEST_F(FuseLogCollectorOutputTest, ReportsAnEmptyFileAndShowsOnlyItsHeader) {
    writeFile("/tmp/fuse/iwf/tracing_on", "");
    EXPECT_EQ(collect(FuseCoverage::information), Printed{});

    EXPECT_EQ(dump(), (Printed{.err = "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n"}));
    EXPECT_EQ(show(), (Printed{.out = headerLine("Tracing Enabled") + "\n"}));
    EXPECT_EQ(filesBelow(outFolder), std::vector<std::string>{});
}

TEST_F(FuseLogCollectorOutputTest, ReportsAFileThatCannotBeReadWhenCollectingAndWhenDumping) {
    fs::remove("/tmp/fuse/iwf/dispatcherCpu");
    fs::remove("/tmp/fuse/iwf/dmaStats");
    ASSERT_EQ(::mkfifo("/tmp/fuse/iwf/dmaStats", 0600), 0);

    EXPECT_EQ(collect(FuseCoverage::statistics),
              (Printed{.err = "Error while opening /tmp/fuse/iwf/dispatcherCpu\n"
                              "Error while opening /tmp/fuse/iwf/dmaStats\n"}));

    EXPECT_EQ(dump(), (Printed{.err = "Output of /tmp/korvel/fuse/iwf/dispatcherCpu.log is empty\n"
                                      "Output of /tmp/korvel/fuse/iwf/dmaStats.log is empty\n"}));
    EXPECT_EQ(show(),
              (Printed{.out = headerLine("Dispatcher CPU") + "\n" + headerLine("Dma Service Statistics") +
                              "\n" + headerLine("FPBridge Statistics") + "state of fpBridgeStats\n"}));
}

TEST_F(FuseLogCollectorOutputTest, ReportsAnEmptyHistoryLog) {
    EXPECT_EQ(collect(FuseCoverage::log), Printed{});

    EXPECT_EQ(dump(), (Printed{.err = "Output of /tmp/korvel/fuse/HistoryLog.log is empty\n"}));
    EXPECT_EQ(show(), (Printed{.out = headerLine("NETFP LOG") + "\n"}));
}

TEST_F(FuseLogCollectorOutputTest, ReportsEachFileIfTheDirectoryCannotBeCreated) {
    collect(FuseCoverage::information);
    const BoardCommand mkdir("mkdir", "exit 1");

    EXPECT_EQ(dump(),
              (Printed{.err = "Command: mkdir -p /tmp/korvel/fuse/iwf/ exited with error, exit code: 1\n"
                              "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n"}));
}

TEST_F(FuseLogCollectorOutputTest, ReportsAFileThatCannotBeWrittenAndWritesTheOthers) {
    collect(FuseCoverage::statistics);
    fs::create_directories(outFolder + "/iwf");
    fs::create_symlink("/dev/full", outFolder + "/iwf/dispatcherCpu.log");

    EXPECT_EQ(dump(),
              (Printed{.err = "Error while writing /tmp/korvel/fuse/iwf/dispatcherCpu.log: No space left "
                              "on device\n"}));

    EXPECT_EQ(filesBelow(outFolder), (std::vector<std::string>{"iwf/dmaStats.log", "iwf/fpBridgeStats.log"}));
}
