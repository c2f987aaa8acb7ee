#include <string>

#include <gtest/gtest.h>

#include "PeerFaults.hpp"
#include "ScenarioFile.hpp"
#include "TextFile.hpp"
#include "UsageError.hpp"

using Boardsim::Deployment;
using Boardsim::loadScenario;
using Boardsim::peerFaultTexts;
using Boardsim::Scenario;
using Boardsim::scenarioText;
using Boardsim::TrafficProfile;
using Boardsim::UsageError;
using Boardsim::writeTextFile;

namespace {

constexpr const char* scenarioPath = "/tmp/scenario.toml";

Scenario load(const std::string& text) {
    writeTextFile(scenarioPath, text);
    Scenario scenario;
    loadScenario(scenarioPath, scenario);
    return scenario;
}

std::string complaintAboutScenario(const std::string& text) {
    try {
        load(text);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "none";
}

}  // namespace

TEST(ScenarioFileTest, SetsTheSameAsTheOptions) {
    const Scenario scenario = load(
        "deployment = 'sfn-antenna'\n"
        "secured = true\n"
        "secure-error = -3\n"
        "cma-error = 4\n"
        "cmdline = 'quiet'\n"
        "config = '/etc/hosts'\n"
        "tmp-size = '3M'\n"
        "ffs-size = 8192\n"
        "without = ['netfp_proxy', 'system_log']\n"
        "fault = ['netfp_master=slow:5']\n"
        "full-logs = true\n"
        "traffic = 'leak:60'\n"
        "seed = 7\n"
        "bare = false\n");

    EXPECT_EQ(scenario.deployment, Deployment::sfnAntenna);
    EXPECT_TRUE(scenario.secured);
    EXPECT_EQ(scenario.secureError, -3);
    EXPECT_EQ(scenario.cmaError, 4);
    EXPECT_EQ(scenario.cmdline, "quiet");
    EXPECT_EQ(scenario.config, "/etc/hosts");
    EXPECT_EQ(scenario.tmpSize, 3U << 20);
    EXPECT_EQ(scenario.ffsSize, 8192U);
    EXPECT_EQ(scenario.without, (std::set<std::string>{"netfp_proxy", "system_log"}));
    EXPECT_EQ(peerFaultTexts(scenario.faults), std::vector<std::string>{"netfp_master=slow:5"});
    EXPECT_TRUE(scenario.fullLogs);
    EXPECT_EQ(scenario.traffic.profile, TrafficProfile::leak);
    EXPECT_EQ(scenario.traffic.headStart, 60);
    EXPECT_EQ(scenario.traffic.seed, 7U);
    EXPECT_FALSE(scenario.bare);
}

TEST(ScenarioFileTest, KeepsTheValuesThatItDoesNotName) {
    Scenario scenario;
    scenario.cmdline = "kept";
    scenario.config = "kept.conf";
    writeTextFile(scenarioPath, "secured = true\n");

    loadScenario(scenarioPath, scenario);

    EXPECT_EQ(scenario.cmdline, "kept");
    EXPECT_EQ(scenario.config, "kept.conf");
}

TEST(ScenarioFileTest, TakesARelativePathFromItsOwnFolder) {
    EXPECT_EQ(load("config = 'my.conf'\n").config, "/tmp/my.conf");
}

TEST(ScenarioFileTest, IsWrittenAsItIsRead) {
    const std::string text =
        scenarioText(load("deployment = 'iwf'\n"
                          "secured = true\n"
                          "cma-error = 4\n"
                          "cmdline = \"it's \\\"quoted\\\"\\n\"\n"
                          "without = ['netfp_proxy']\n"
                          "fault = ['netfp_master=slow:5', 'netfp_server=short']\n"
                          "traffic = 'flood:5'\n"
                          "seed = '18446744073709551615'\n"
                          "bare = true\n"));

    EXPECT_EQ(scenarioText(load(text)), text);
}

TEST(ScenarioFileTest, KeepsQuotesBesideALineEnd) {
    Scenario scenario;
    scenario.cmdline = "three ''' or \"\"\" quotes\nand a line end";

    EXPECT_EQ(load(scenarioText(scenario)).cmdline, scenario.cmdline);
}

TEST(ScenarioFileTest, IsRefusedWithTheLineAndTheReason) {
    const struct {
        const char* text;
        const char* complaint;
    } cases[] = {
        {"\ncolour = 1\n", "/tmp/scenario.toml:2: colour: unknown key"},
        {"secured = 1\n", "/tmp/scenario.toml:1: secured: not true or false: '1'"},
        {"cma-error = 1.5\n", "/tmp/scenario.toml:1: cma-error: not a string, an integer or a boolean"},
        {"cma-error = 4294967296\n",
         "/tmp/scenario.toml:1: cma-error: not a number, or out of range: '4294967296'"},
        {"without = 'netfp_proxy'\n", "/tmp/scenario.toml:1: without: not an array"},
        {"without = ['nobody']\n",
         "/tmp/scenario.toml:1: without: unknown peer: 'nobody'\n"
         "valid peers: system_log, netfp_master, netfp_proxy, netfp_server, resmgr_server, iwf_dispatcher, "
         "sfn_dispatcher"},
        {"fault = [\n  'netfp_master=silent',\n  'netfp_server=sad',\n]\n",
         "/tmp/scenario.toml:3: fault: netfp_server has no fault 'sad'\n"
         "valid faults: silent, slow:MS, dying, unended, short"},
        {"traffic = 'flod'\n",
         "/tmp/scenario.toml:1: traffic: unknown profile: 'flod'\n"
         "valid profiles: none, steady, busy, leak, flood, flapping"},
        {"traffic = 'leak:'\n", "/tmp/scenario.toml:1: traffic: not a number, or out of range: ''"},
        {"traffic = 'leak:-1'\n", "/tmp/scenario.toml:1: traffic: not from 0 to 86400 seconds: 'leak:-1'"},
        {"traffic = 'leak:86401'\n",
         "/tmp/scenario.toml:1: traffic: not from 0 to 86400 seconds: 'leak:86401'"},
        {"seed = -1\n", "/tmp/scenario.toml:1: seed: not a number, or out of range: '-1'"},
        {"without = [['nobody']]\n", "/tmp/scenario.toml:1: without: not a string, an integer or a boolean"},
        {"secured = true\n[board]\nsecured = true\n", "/tmp/scenario.toml:2: board: unknown key"},
        {"tmp-size = '0K'\n", "/tmp/scenario.toml:1: tmp-size: not a valid size: '0K'"},
        {"tmp-size = '99999999999999999M'\n",
         "/tmp/scenario.toml:1: tmp-size: not a valid size: '99999999999999999M'"},
    };
    for (const auto& [text, complaint] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(complaintAboutScenario(text), complaint);
    }
}

TEST(ScenarioFileTest, IsRefusedIfItIsNotToml) {
    EXPECT_TRUE(complaintAboutScenario("\n\nsecured true\n").starts_with("/tmp/scenario.toml:3: "));
}
