// The interface of the platform's configuration.

#include <concepts>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "BoardSecurity.hpp"
#include "Config.hpp"
#include "Trim.hpp"

namespace {

using std::same_as;

static_assert(std::convertible_to<SFNDeploymentType, int> && std::convertible_to<DispatcherType, int>);
static_assert(std::constructible_from<Config, const std::string&>);
static_assert(requires(const Config& config, DispatcherType type, int number) {
    { config.getDebugLvl() } -> same_as<int>;
    { config.isL2SCTEnv() } -> same_as<bool>;
    { config.shouldStartIWF() } -> same_as<bool>;
    { config.shouldStartSFN() } -> same_as<bool>;
    { config.shouldCollectLogOnExit() } -> same_as<bool>;
    { config.getDeploymentConfigFile(type) } -> same_as<std::string>;
    { config.getDeploymentConfigFile(number) } -> same_as<std::string>;
});
static_assert(requires(Config & config, const std::string& text, std::istringstream& line,
                       std::istream& stream, std::string& out) {
    { config.getSFNDeploymentType() } -> same_as<SFNDeploymentType>;
    { config.checkForPrivate(text) } -> same_as<std::string>;
    { config.parseConfig(text) } -> same_as<void>;
    { config.parseLine(text) } -> same_as<bool>;
    { config.getEntry(line, out) } -> same_as<bool>;
    { config.isExecutable(text) } -> same_as<bool>;
    { config.fileIsEmpty(stream) } -> same_as<bool>;
    config.parseSFNType(stream);
    config.initSFNDeploymentType();
});
static_assert(requires(const std::string& path, std::string& text) {
    { isBoardSecured() } -> same_as<bool>;
    { fileExists(path) } -> same_as<bool>;
    { trim(text) } -> same_as<void>;
    { ltrim(text) } -> same_as<void>;
    { rtrim(text) } -> same_as<void>;
});

const std::string noFile = "/tmp/missing.conf";

TEST(ConfigInterface, NumbersTheDeploymentsAndTheDispatcherTypes) {
    EXPECT_EQ(int{sfnDeploymentNone}, 0);
    EXPECT_EQ(int{sfnDeploymentMaster}, 1);
    EXPECT_EQ(int{sfnDeploymentAntenna}, 2);
    EXPECT_EQ(int{dispatcherTypeIWF}, 0);
    EXPECT_EQ(int{dispatcherTypeSFN}, 1);
}

TEST(ConfigInterface, ParsesSingleLines) {
    Config config(noFile);

    EXPECT_TRUE(config.parseLine("doNotCollectLogOnExit = 1"));
    EXPECT_FALSE(config.parseLine("iwfDeploymentCfgPath"));
    EXPECT_FALSE(config.parseLine("=/etc/other.cfg"));

    EXPECT_FALSE(config.shouldCollectLogOnExit());
    EXPECT_EQ(config.getDeploymentConfigFile(0), "/etc/QEL_IWF.cfg");
}

TEST(ConfigInterface, ParsesTheEntriesOfALine) {
    std::istringstream line(" key = value ");
    std::string entry;

    EXPECT_TRUE(Config::getEntry(line, entry));
    EXPECT_EQ(entry, "key");
    EXPECT_TRUE(Config::getEntry(line, entry));
    EXPECT_EQ(entry, "value");
    EXPECT_FALSE(Config::getEntry(line, entry));
}

TEST(ConfigInterface, ReadsADeploymentFromAnyStream) {
    std::istringstream empty;
    std::istringstream antenna("8core_SfnAnt");

    EXPECT_TRUE(Config::fileIsEmpty(empty));
    EXPECT_FALSE(Config::fileIsEmpty(antenna));
    EXPECT_EQ(Config::parseSFNType(antenna), 2);
}

TEST(ConfigInterface, DistinguishesExecutablesFromOtherFiles) {
    EXPECT_TRUE(Config::isExecutable("/bin/sh"));
    EXPECT_FALSE(Config::isExecutable("/etc/passwd"));
}

}  // namespace
