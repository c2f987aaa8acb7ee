// The outputs for the SYSLIB log and the dumps, and the errors if they fail.

#include <filesystem>
#include <optional>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "HeaderLine.hpp"
#include "Printed.hpp"
#include "RemovedWhenRead.hpp"
#include "SharedLogText.hpp"
#include "StackProcess.hpp"
#include "TestFiles.hpp"
#include "TiCoverage.hpp"
#include "TiLogCollector.hpp"

namespace fs = std::filesystem;
using Korvel::TiLogCollector;

namespace {

const std::string syslibFile = "/tmp/korvel/ti/syslib_sm_log.log";
const std::string dumpFile = "/tmp/korvel/ti/netfp_proxy.log";

class TiLogCollectorOutputTest : public testing::Test {
protected:
    TiLogCollectorOutputTest() {
        fs::remove_all("/tmp/korvel");
        fs::remove("/tmp/netfp_proxy.log");
    }

    void create(unsigned mask) {
        printedBy([&] { collector.emplace("/tmp/korvel", mask); });
    }

    void collect() {
        printed = printedBy([&] { collector->collectLogs(false); });
    }

    Printed show() {
        return printedBy([&] { collector->printOnConsole(); });
    }

    Printed dump() {
        return printedBy([&] { collector->dumpToFiles(); });
    }

    std::optional<TiLogCollector> collector;
    Printed printed;
};

}  // namespace

TEST_F(TiLogCollectorOutputTest, ShowsTheSyslibLogWithoutALineEndOfItsOwn) {
    const std::string log = writeSharedLog("syslib_log_memory", {"first", "second"});
    create(TiCoverage::syslib);
    collect();

    EXPECT_EQ(show(), (Printed{.out = headerLine("SYSLIB LOG") + log}));
}

TEST_F(TiLogCollectorOutputTest, ShowsTheHeaderOfAnEmptySyslibLog) {
    create(TiCoverage::syslib);
    collect();

    EXPECT_EQ(show(), (Printed{.out = headerLine("SYSLIB LOG") + writeSharedLog("syslib_log_memory", {})}));
}

TEST_F(TiLogCollectorOutputTest, WritesTheSyslibLogOnlyToItsFile) {
    const std::string log = writeSharedLog("syslib_log_memory", {"first", "second"});
    create(TiCoverage::syslib);
    collect();
    writeFile(syslibFile, "left behind by an earlier run, and longer than the log" + log);

    EXPECT_EQ(dump(), Printed{});

    EXPECT_EQ(contentOfFile(syslibFile), log);
    EXPECT_EQ(filesBelow("/tmp/korvel"), std::vector<std::string>{"ti/syslib_sm_log.log"});
}

TEST_F(TiLogCollectorOutputTest, KeepsTheSyslibLogFromTheTimeOfCollection) {
    const std::string log = writeSharedLog("syslib_log_memory", {"early"});
    create(TiCoverage::syslib);
    collect();
    writeSharedLog("syslib_log_memory", {"late"});

    EXPECT_EQ(show(), (Printed{.out = headerLine("SYSLIB LOG") + log}));
}

TEST_F(TiLogCollectorOutputTest, ReportsASyslibLogThatWasNotCollected) {
    create(TiCoverage::syslib);

    EXPECT_EQ(show(), (Printed{.err = "Syslib shared memory log not found\n"}));
    EXPECT_EQ(dump(), (Printed{.err = "Syslib shared memory log not found\n"}));

    EXPECT_FALSE(fs::exists(syslibFile));
}

TEST_F(TiLogCollectorOutputTest, IgnoresTheSyslibLogUnlessSelected) {
    writeSharedLog("syslib_log_memory", {"first"});
    create(TiCoverage::proxy);
    collect();

    EXPECT_EQ(show(), (Printed{.out = headerLine("netfp_proxy") + "\n"}));
    EXPECT_EQ(dump(), Printed{});
    EXPECT_FALSE(fs::exists(syslibFile));
}

TEST_F(TiLogCollectorOutputTest, ReportsASyslibFileThatCannotBeOpened) {
    create(TiCoverage::syslib);
    collect();
    fs::remove_all("/tmp/korvel/ti");

    EXPECT_EQ(dump(), (Printed{.err = "Error while opening /tmp/korvel/ti/syslib_sm_log.log\n"}));
}

TEST_F(TiLogCollectorOutputTest, ReportsASyslibFileThatCannotBeWrittenAndStillShowsTheLog) {
    const std::string log = writeSharedLog("syslib_log_memory", {"first"});
    create(TiCoverage::syslib);
    collect();
    fs::create_symlink("/dev/full", syslibFile);

    EXPECT_EQ(dump(),
              (Printed{.err = "Error while writing /tmp/korvel/ti/syslib_sm_log.log: No space left on "
                              "device\n"}));
    EXPECT_EQ(show(), (Printed{.out = headerLine("SYSLIB LOG") + log}));
}

TEST_F(TiLogCollectorOutputTest, ReportsADumpThatCouldNotBeCopiedBeforeItVanished) {
    writeFile("/tmp/begun", "begun");
    const StackProcess process("netfp_proxy", "mv /tmp/begun /tmp/netfp_proxy.log");
    create(TiCoverage::proxy);
    fs::create_symlink("/dev/full", dumpFile);
    const RemovedWhenRead vanishing("/tmp/begun", "/tmp/netfp_proxy.log");

    collect();

    EXPECT_EQ(printed, (Printed{.err = "Error while writing /tmp/korvel/ti/netfp_proxy.log: No space left "
                                       "on device\n"}));
    EXPECT_EQ(show(), (Printed{.out = headerLine("netfp_proxy") + "begun" + incompleteDump + "\n"}));
}

TEST_F(TiLogCollectorOutputTest, ReportsOnceADumpThatCannotBeCopiedAndStillShowsIt) {
    const StackProcess process("netfp_proxy");
    const std::string complete = std::string(60, 'x') + "</netfp_proxy_dump>\n";
    const std::pair<std::string, std::string> cases[] = {{complete, complete},
                                                         {"begun", "begun" + incompleteDump}};
    for (const auto& [text, shown] : cases) {
        create(TiCoverage::proxy);
        writeFile("/tmp/netfp_proxy.log", text);
        fs::remove(dumpFile);
        fs::create_symlink("/dev/full", dumpFile);

        collect();

        EXPECT_EQ(printed,
                  (Printed{.err = "Error while writing /tmp/korvel/ti/netfp_proxy.log: No space left "
                                  "on device\n"}));
        EXPECT_EQ(show(), (Printed{.out = headerLine("netfp_proxy") + shown + "\n"}));
    }
}

TEST_F(TiLogCollectorOutputTest, NeverWaitsForTheWriterOfAFifo) {
    const StackProcess process("netfp_proxy");
    create(TiCoverage::proxy);
    ASSERT_EQ(::mkfifo("/tmp/netfp_proxy.log", 0600), 0);

    collect();

    EXPECT_EQ(printed,
              (Printed{.err = "Error while reading /tmp/netfp_proxy.log: No such device or address\n"}));
    EXPECT_EQ(show(), (Printed{.out = headerLine("netfp_proxy") + incompleteDump + "\n"}));
    EXPECT_TRUE(fs::exists("/tmp/netfp_proxy.log"));
}
