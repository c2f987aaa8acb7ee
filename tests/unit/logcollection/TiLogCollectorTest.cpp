// The dumps of the stack's processes: requested by a signal, awaited, and kept.

#include <chrono>
#include <filesystem>
#include <optional>

#include <gtest/gtest.h>

#include "HeaderLine.hpp"
#include "Printed.hpp"
#include "StackProcess.hpp"
#include "TestFiles.hpp"
#include "TiCoverage.hpp"
#include "TiLogCollector.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;
using Korvel::TiLogCollector;

namespace {

/// A complete dump of `size` characters.
std::string dumpOf(const std::string& name, std::size_t size = 100) {
    const std::string end = "</" + name + "_dump>";
    return std::string(size - end.size(), 'x') + end;
}

class TiLogCollectorTest : public testing::Test {
protected:
    TiLogCollectorTest() {
        fs::remove_all("/tmp/korvel");
        fs::remove("/tmp/netfp_proxy.log");
    }

    void TearDown() override { Korvel::setVerboseMode(false); }

    void create(unsigned mask) {
        printedBy([&] { collector.emplace("/tmp/korvel", mask); });
    }

    Printed collect(bool printRequested = false) {
        return printedBy([&] { collector->collectLogs(printRequested); });
    }

    /// The console output for the collected dumps.
    std::string shown() {
        return printedBy([&] { collector->printOnConsole(); }).out;
    }

    std::optional<TiLogCollector> collector;
};

}  // namespace

TEST_F(TiLogCollectorTest, KeepsTheDumpThatAProcessWritesWhenItIsSignalled) {
    const std::string dump = dumpOf("netfp_proxy");
    const StackProcess process("netfp_proxy", "printf %s \"" + dump + "\" > /tmp/netfp_proxy.log");
    create(TiCoverage::proxy);

    EXPECT_EQ(collect(), Printed{});

    EXPECT_EQ(contentOfFile("/tmp/korvel/ti/netfp_proxy.log"), dump);
    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dump + "\n");
    EXPECT_FALSE(fs::exists("/tmp/netfp_proxy.log"));
    process.awaitSignal();
}

TEST_F(TiLogCollectorTest, WaitsForADumpThatIsWrittenInPieces) {
    const std::string dump = dumpOf("netfp_proxy");
    const StackProcess process("netfp_proxy", "printf %s \"" + dump.substr(0, 70) +
                                                  "\" > /tmp/netfp_proxy.log; sleep 0.1; printf %s \"" +
                                                  dump.substr(70) + "\" >> /tmp/netfp_proxy.log");
    create(TiCoverage::proxy);

    EXPECT_EQ(collect(), Printed{});

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dump + "\n");
}

TEST_F(TiLogCollectorTest, FindsTheTerminatorAnywhereInTheDump) {
    const std::string dump = dumpOf("netfp_proxy") + "\nand more\n";
    const StackProcess process("netfp_proxy");
    writeFile("/tmp/netfp_proxy.log", dump);
    create(TiCoverage::proxy);

    collect();

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dump + "\n");
}

TEST_F(TiLogCollectorTest, TreatsADumpOf63CharactersOrLessAsIncomplete) {
    const StackProcess process("netfp_proxy");
    create(TiCoverage::proxy);
    const std::pair<std::size_t, std::string> cases[] = {{64, ""}, {63, incompleteDump}};
    for (const auto& [size, note] : cases) {
        writeFile("/tmp/netfp_proxy.log", dumpOf("netfp_proxy", size));

        collect();

        EXPECT_EQ(shown(), headerLine("netfp_proxy") + dumpOf("netfp_proxy", size) + note + "\n");
    }
}

TEST_F(TiLogCollectorTest, NotesThatADumpHasNoTerminatorOfItsOwn) {
    const std::string dump = dumpOf("netfp_server");
    const StackProcess process("netfp_proxy");
    writeFile("/tmp/netfp_proxy.log", dump);
    create(TiCoverage::proxy);

    EXPECT_EQ(collect(), Printed{});

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dump + incompleteDump + "\n");
    EXPECT_EQ(contentOfFile("/tmp/korvel/ti/netfp_proxy.log"), dump);
    EXPECT_FALSE(fs::exists("/tmp/netfp_proxy.log"));
}

TEST_F(TiLogCollectorTest, WaitsAboutASecondForAMissingDump) {
    const StackProcess process("netfp_proxy");
    create(TiCoverage::proxy);
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(collect(), Printed{});

    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(shown(), headerLine("netfp_proxy") + incompleteDump + "\n");
}

TEST_F(TiLogCollectorTest, SignalsTheSelectedProcessesInTheirOrder) {
    const auto dumpInTurn = [](const std::string& name) {
        return "echo " + name + " >> /tmp/order; printf %s \"" + dumpOf(name) + "\" > /tmp/" + name + ".log";
    };
    const StackProcess manager("resmgr_server", dumpInTurn("resmgr_server"));
    const StackProcess master("netfp_master", dumpInTurn("netfp_master"));
    const StackProcess theServer("netfp_server", dumpInTurn("netfp_server"));
    const StackProcess theProxy("netfp_proxy", dumpInTurn("netfp_proxy"));
    create(TiCoverage::everyProcess);

    EXPECT_EQ(collect(), Printed{});

    EXPECT_EQ(contentOfFile("/tmp/order"), "netfp_proxy\nnetfp_server\nnetfp_master\nresmgr_server\n");
    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dumpOf("netfp_proxy") + "\n" + headerLine("netfp_server") +
                           dumpOf("netfp_server") + "\n" + headerLine("netfp_master") +
                           dumpOf("netfp_master") + "\n" + headerLine("resmgr_server") +
                           dumpOf("resmgr_server") + "\n");
}

TEST_F(TiLogCollectorTest, SignalsNoProcessForTheSyslibLog) {
    const StackProcess process("netfp_proxy");
    create(TiCoverage::syslib);

    EXPECT_EQ(collect(), Printed{});

    EXPECT_FALSE(process.wasSignalled());
}

TEST_F(TiLogCollectorTest, ReportsAMissingProcessInVerboseModeAndShowsItsHeader) {
    create(TiCoverage::everyProcess);
    Korvel::setVerboseMode(true);

    EXPECT_EQ(
        collect(),
        (Printed{.out = "Starting log collection from TI...\n"
                        "Sending 'kill -10' signal to netfp_proxy [pid:0]...\n"
                        "Invalid pid for netfp_proxy [pid:0], process may not be running, skipping\n"
                        "Sending 'kill -10' signal to netfp_server [pid:0]...\n"
                        "Invalid pid for netfp_server [pid:0], process may not be running, skipping\n"
                        "Sending 'kill -10' signal to netfp_master [pid:0]...\n"
                        "Invalid pid for netfp_master [pid:0], process may not be running, skipping\n"
                        "Sending 'kill -10' signal to resmgr_server [pid:0]...\n"
                        "Invalid pid for resmgr_server [pid:0], process may not be running, skipping\n"}));

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + "\n" + headerLine("netfp_server") + "\n" +
                           headerLine("netfp_master") + "\n" + headerLine("resmgr_server") + "\n");
}

TEST_F(TiLogCollectorTest, PrintsItsStepsInVerboseMode) {
    const StackProcess process("netfp_proxy");
    writeFile("/tmp/netfp_proxy.log", dumpOf("netfp_proxy"));
    create(TiCoverage::proxy);
    Korvel::setVerboseMode(true);

    EXPECT_EQ(collect(), (Printed{.out = "Starting log collection from TI...\n"
                                         "Sending 'kill -10' signal to netfp_proxy [pid:" +
                                         std::to_string(process.pid()) +
                                         "]...\n"
                                         "Dumping netfp_proxy to /tmp/korvel/ti/netfp_proxy.log... \n"}));
}

TEST_F(TiLogCollectorTest, ReportsASignalThatCannotBeSentAndStillCollectsTheDump) {
    StackProcess process("netfp_proxy");
    const std::string pid = std::to_string(process.pid());
    create(TiCoverage::proxy);
    process.end();
    writeFile("/tmp/netfp_proxy.log", dumpOf("netfp_proxy"));

    EXPECT_EQ(collect(), (Printed{.err = "Error while sending 'kill -10' signal to netfp_proxy [pid:" + pid +
                                         "], errno: No such process\n"}));

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dumpOf("netfp_proxy") + "\n");
}

TEST_F(TiLogCollectorTest, LeavesNoDirectoryBehindIfConsolePrintingIsRequested) {
    const StackProcess process("netfp_proxy");
    writeFile("/tmp/netfp_proxy.log", dumpOf("netfp_proxy"));
    create(TiCoverage::proxy);

    EXPECT_EQ(collect(true), Printed{});

    EXPECT_FALSE(fs::exists("/tmp/korvel/ti"));
    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dumpOf("netfp_proxy") + "\n");
}

TEST_F(TiLogCollectorTest, HasNoFolderForTheNextDumpIfConsolePrintingIsRequested) {
    const StackProcess first("netfp_proxy");
    const StackProcess second("netfp_server");
    writeFile("/tmp/netfp_proxy.log", dumpOf("netfp_proxy"));
    writeFile("/tmp/netfp_server.log", dumpOf("netfp_server"));
    create(TiCoverage::proxy | TiCoverage::server);

    EXPECT_EQ(collect(true), Printed{});

    EXPECT_EQ(shown(), headerLine("netfp_proxy") + dumpOf("netfp_proxy") + "\n" + headerLine("netfp_server") +
                           incompleteDump + "\n");
    EXPECT_FALSE(fs::exists("/tmp/netfp_server.log"));
}
