#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Injection.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"
#include "Trace.hpp"
#include "VerboseText.hpp"

using Boardsim::Board;
using Boardsim::Deployment;

namespace {

const std::string configurationFile = "/rom/private/fpdispatcher.conf";
const std::string shutdownPackage = "/ffs/run/logs/netfp_logs_shutdown.tgz";

/// Whether the configuration enables packages on system shutdown.
bool collectsOnExit() {
    run({"rm", "-f", shutdownPackage});
    const Outcome outcome = korvel({"pkg-sdown", "dinf"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return run({"test", "-e", shutdownPackage}).status == 0;
}

/// The dispatcher instances that a run queries without an option.
std::vector<std::string> instancesByDefault() {
    run({"rm", "-rf", "/tmp/korvel"});
    EXPECT_EQ(korvel({"dump", "dinf"}).status, 0);
    std::vector<std::string> instances;
    for (const std::string& file : filesBelow("/tmp/korvel/mmi")) {
        instances.push_back(file.substr(0, file.find('/')));
    }
    return instances;
}

/// The first `count` records in the board's system log, without their time. Waits until they have arrived.
std::vector<std::string> systemLog(std::size_t count) {
    constexpr int longestWaitMs = 5000;
    for (int waited = 0; waited < longestWaitMs && linesOfFile("/run/boardsim/system.log").size() < count;
         ++waited) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    const std::string time = "Nov 21 10:00:00 ";
    std::vector<std::string> records;
    for (const std::string& line : linesOfFile("/run/boardsim/system.log")) {
        const std::size_t priorityEnd = line.find('>') + 1;
        records.push_back(line.substr(0, priorityEnd) + line.substr(priorityEnd + time.size()));
    }
    return records;
}

using Names = std::vector<std::string>;

}  // namespace

TEST(PlatformConfiguration, DeploymentDecidesTheInstances) {
    const struct {
        Deployment deployment;
        Names instances;
    } cases[] = {
        {Deployment::iwf, {"iwf"}},
        {Deployment::sfnMaster, {"iwf", "sfn"}},
        {Deployment::sfnAntenna, {"sfn"}},
    };
    for (const auto& [deployment, instances] : cases) {
        run({"rm", "-rf", "/rom/private/is_master", "/rom/config/deployment_type"});
        const Board board({.deployment = deployment});
        EXPECT_EQ(instancesByDefault(), instances);
    }
}

TEST(PlatformConfiguration, AllowsShutdownPackagesUnlessTheFileForbidsThem) {
    const Board board({.deployment = Deployment::iwf});
    EXPECT_TRUE(collectsOnExit()) << "without a file";
    for (const std::string line : {"doNotCollectLogOnExit=1", "doNotCollectLogOnExit =  1 \t"}) {
        writeFile(configurationFile, line + "\n");
        EXPECT_FALSE(collectsOnExit()) << line;
    }
    for (const std::string line :
         {"doNotCollectLogOnExit=yes", "doNotCollectLogOnExit=0", "#doNotCollectLogOnExit=1",
          " #doNotCollectLogOnExit=1", "doNotCollectLogOnExit="}) {
        writeFile(configurationFile, line + "\n");
        EXPECT_TRUE(collectsOnExit()) << line;
    }
}

TEST(PlatformConfiguration, IsNotReadOnASecuredBoard) {
    const Board board({.deployment = Deployment::iwf, .secured = true});
    writeFile(configurationFile, "doNotCollectLogOnExit=1\n");
    EXPECT_TRUE(collectsOnExit());
    EXPECT_EQ(instancesByDefault(), Names{"iwf"});
}

TEST(PlatformConfiguration, IsNotReadIfTheSecurityOfTheBoardIsUnknown) {
    const Board board({.deployment = Deployment::iwf, .secureError = 5});
    writeFile(configurationFile, "doNotCollectLogOnExit=1\n");
    EXPECT_TRUE(collectsOnExit());
}

TEST(PlatformConfiguration, IsLoggedInVerboseModeWithAnEmptyLineForEachRecord) {
    const Board board({.deployment = Deployment::iwf});
    writeFile(configurationFile, "debugCfg=x\nL2SCTEnv=1\n=1\nkey\n");
    const Outcome outcome = korvel({"-v", "getport", "4"});
    EXPECT_EQ(systemLog(9), (Names{
                                "<14>korvel: Opening '/rom/private/fpdispatcher.conf' file",
                                "<15>korvel: Adding config entry [debugCfg, x]",
                                "<15>korvel: Adding config entry [L2SCTEnv, 1]",
                                "<12>korvel: Trying to add incomplete entry: '','1'",
                                "<12>korvel: Could not get entry from: key",
                                "<12>korvel: Trying to add incomplete entry: 'key',''",
                                "<11>korvel: Parsing debugCfg failed",
                                "<14>korvel: L2 SCT environment forced by config file",
                                "<14>korvel: Detected L2 SCT environment in isolcpus",
                            }));
    EXPECT_EQ(outcome.out, verboseEnabled + std::string(8, '\n') + getPort4Lines);
    EXPECT_EQ(outcome.err, "");
}

TEST(PlatformConfiguration, IsNotLoggedOtherwise) {
    const Board board({});
    writeFile(configurationFile, "debugCfg=x\n");
    EXPECT_EQ(korvel({"getport", "4"}).out, "4\n");
    EXPECT_EQ(systemLog(0), Names{});
}

TEST(PlatformConfiguration, IsSkippedIfReadingItWouldBlock) {
    const Board board({.deployment = Deployment::iwf});
    ASSERT_EQ(run({"mkfifo", configurationFile}).status, 0);
    EXPECT_EQ(korvel({"-v", "getport", "4"}).out, verboseEnabled + std::string(2, '\n') + getPort4Lines);
    EXPECT_EQ(systemLog(3), (Names{
                                "<14>korvel: Opening '/rom/private/fpdispatcher.conf' file",
                                "<11>korvel: Error while opening '/rom/private/fpdispatcher.conf' file",
                                "<14>korvel: Detected L2 SCT environment in isolcpus",
                            }));
}

TEST(PlatformConfiguration, FindsTheIsolatedProcessorsEvenIfASignalInterruptsTheRead) {
    const Board board({.deployment = Deployment::iwf});
    const std::vector<std::string> command{"korvel", "-v", "getport", "4"};
    std::vector<std::string> reads;
    const Outcome undisturbed = runTraced("read", command, reads);
    const auto found = std::ranges::find_if(
        reads, [](const std::string& call) { return call.find("\"console=") != std::string::npos; });
    ASSERT_NE(found, reads.end());
    const std::string number = std::to_string(found - reads.begin() + 1);

    EXPECT_EQ(runInjected({.faults = {"read:error=EINTR:when=" + number}}, command), undisturbed);
}

TEST(PlatformConfiguration, UsesItsDefaultsSilentlyIfReadingFails) {
    const Board board({.deployment = Deployment::iwf});
    writeFile(configurationFile, "doNotCollectLogOnExit=1\n");
    const Outcome outcome =
        runInjected({.faults = {"read:error=EIO"}, .path = configurationFile, .inChildren = true},
                    {"korvel", "getport", "4"});
    EXPECT_EQ(outcome.out, "4\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}
