// A dump that existed before the process was signalled. It counts as stale until it changes.

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "HeaderLine.hpp"
#include "Printed.hpp"
#include "StackProcess.hpp"
#include "TestFiles.hpp"
#include "TiCoverage.hpp"
#include "TiLogCollector.hpp"

namespace fs = std::filesystem;
using Korvel::TiLogCollector;

namespace {

class TiLogCollectorStaleDumpTest : public testing::Test {
protected:
    static constexpr const char* source = "/tmp/netfp_proxy.log";
    static constexpr const char* copy = "/tmp/korvel/ti/netfp_proxy.log";

    /// A complete dump, filled with `filler`.
    static std::string dumpFullOf(char filler) { return std::string(80, filler) + "</netfp_proxy_dump>\n"; }

    const std::string stale = dumpFullOf('o');
    const std::string fresh = dumpFullOf('n');
    const fs::file_time_type longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1000);

    void layStaleDump() const {
        fs::remove_all("/tmp/korvel");
        writeFile(source, stale);
        fs::last_write_time(source, longAgo);
        writeFile("/tmp/fresh", fresh);
    }

    /// The dump that a collection keeps of the proxy. The collection must report nothing.
    static std::string collected() {
        std::string text;
        EXPECT_EQ(printedBy([&] {
                      TiLogCollector collector("/tmp/korvel", TiCoverage::proxy);
                      collector.collectLogs(false);
                      text = printedBy([&] { collector.printOnConsole(); }).out;
                  }),
                  Printed{});
        return text;
    }
};

TEST_F(TiLogCollectorStaleDumpTest, IsReplacedByADumpThatComesLater) {
    const struct {
        std::string way;
        std::string onSignal;
        std::string expected;
    } cases[] = {
        {"rewritten in place, of the same size", "cat /tmp/fresh > /tmp/netfp_proxy.log", fresh},
        {"renamed over", "mv /tmp/fresh /tmp/netfp_proxy.log", fresh},
        {"grown", "cat /tmp/fresh >> /tmp/netfp_proxy.log", stale + fresh},
        {"removed and written anew",
         "rm /tmp/netfp_proxy.log; sleep 0.1; cat /tmp/fresh > /tmp/netfp_proxy.log", fresh},
        {"renamed over, with the times of the stale one",
         "touch -r /tmp/netfp_proxy.log /tmp/fresh; mv /tmp/fresh /tmp/netfp_proxy.log", fresh},
        {"rewritten in place, with the times of the stale one",
         "touch -r /tmp/netfp_proxy.log /tmp/times; cat /tmp/fresh > /tmp/netfp_proxy.log;"
         " touch -r /tmp/times /tmp/netfp_proxy.log",
         fresh},
    };
    for (const auto& [way, onSignal, expected] : cases) {
        SCOPED_TRACE(way);
        layStaleDump();
        const StackProcess process("netfp_proxy", "sleep 0.3; " + onSignal);

        EXPECT_EQ(collected(), headerLine("netfp_proxy") + expected + "\n");

        EXPECT_EQ(contentOfFile(copy), expected);
        EXPECT_FALSE(fs::exists(source));
    }
}

TEST_F(TiLogCollectorStaleDumpTest, IsCollectedWithItsTimesIfNoOtherComes) {
    layStaleDump();
    const StackProcess process("netfp_proxy");
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(collected(), headerLine("netfp_proxy") + stale + "\n");

    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(contentOfFile(copy), stale);
    EXPECT_EQ(fs::last_write_time(copy), longAgo);
    EXPECT_FALSE(fs::exists(source));
}

TEST_F(TiLogCollectorStaleDumpTest, DoesNotPassItsTimesToAFreshCopy) {
    layStaleDump();
    const StackProcess process(
        "netfp_proxy", "touch -r /tmp/netfp_proxy.log /tmp/fresh; mv /tmp/fresh /tmp/netfp_proxy.log");

    collected();

    EXPECT_GT(fs::last_write_time(copy), longAgo + std::chrono::hours(1));
}

}  // namespace
