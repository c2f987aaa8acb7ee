#include "ConfigFixture.hpp"

// The meaning of each key of the configuration file.

namespace {

class ConfigEntries : public ConfigFixture {};

TEST_F(ConfigEntries, TakeTheirDefaultsWithoutAFile) {
    const Config board = config();

    EXPECT_EQ(board.getDebugLvl(), 0);
    EXPECT_FALSE(board.isL2SCTEnv());
    EXPECT_TRUE(board.shouldCollectLogOnExit());
    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeIWF), "/etc/QEL_IWF.cfg");
    EXPECT_EQ(records(), std::vector<std::string>{});
}

TEST_F(ConfigEntries, SetTheDebugLevel) {
    const struct {
        std::string value;
        int level;
    } cases[] = {
        {"3", 3}, {"-2", -2}, {"7 lamps", 7}, {"4.9", 4}, {"2147483647", 2147483647}, {"+5", 5},
    };
    for (const auto& [value, level] : cases) {
        SCOPED_TRACE(value);
        EXPECT_EQ(configOf("debugCfg=" + value + "\n").getDebugLvl(), level);
        EXPECT_EQ(records(), (std::vector<std::string>{
                                 "information: Opening '/rom/private/fpdispatcher.conf' file",
                                 "debug: Adding config entry [debugCfg, " + value + "]",
                             }));
    }
}

TEST_F(ConfigEntries, LeaveTheDebugLevelAtZeroIfItIsNotANumber) {
    for (const std::string value : {"high", "2147483648", "-2147483649", "99999999999999999999", "-"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(configOf("debugCfg=" + value + "\n").getDebugLvl(), 0);
        EXPECT_EQ(records(), (std::vector<std::string>{
                                 "information: Opening '/rom/private/fpdispatcher.conf' file",
                                 "debug: Adding config entry [debugCfg, " + value + "]",
                                 "error: Parsing debugCfg failed",
                             }));
    }
}

TEST_F(ConfigEntries, ForceTheL2SCTEnvironment) {
    EXPECT_TRUE(configOf("L2SCTEnv=1\n").isL2SCTEnv());
    EXPECT_EQ(records(), (std::vector<std::string>{
                             "information: Opening '/rom/private/fpdispatcher.conf' file",
                             "debug: Adding config entry [L2SCTEnv, 1]",
                             "information: L2 SCT environment forced by config file",
                         }));
}

TEST_F(ConfigEntries, ForceTheL2SCTEnvironmentOnlyIfTheValueIsOne) {
    for (const std::string value : {"0", "01", "11", "yes", "1 1"}) {
        SCOPED_TRACE(value);
        EXPECT_FALSE(configOf("L2SCTEnv=" + value + "\n").isL2SCTEnv());
    }
}

TEST_F(ConfigEntries, DisableCollectionOnExit) {
    EXPECT_FALSE(configOf("doNotCollectLogOnExit=1\n").shouldCollectLogOnExit());
}

TEST_F(ConfigEntries, DisableCollectionOnExitWithBlanksAroundTheOne) {
    EXPECT_FALSE(configOf(" doNotCollectLogOnExit = 1 \n").shouldCollectLogOnExit());
}

TEST_F(ConfigEntries, KeepCollectionOnExitForAnyOtherValue) {
    for (const std::string value : {"yes", "0", "10", "true"}) {
        SCOPED_TRACE(value);
        EXPECT_TRUE(configOf("doNotCollectLogOnExit=" + value + "\n").shouldCollectLogOnExit());
    }
}

TEST_F(ConfigEntries, OverrideTheDeploymentConfigurationFiles) {
    const Config board = configOf(
        "iwfDeploymentCfgPath=/tmp/iwf.cfg\n"
        "sfnDeploymentCfgPath=/tmp/sfn.cfg\n");

    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeIWF), "/tmp/iwf.cfg");
    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeSFN), "/tmp/sfn.cfg");
}

TEST_F(ConfigEntries, OverrideOnlyTheNamedInstance) {
    const Config board = configOf("sfnDeploymentCfgPath=/tmp/sfn.cfg\n");

    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeIWF), "/etc/QEL_IWF.cfg");
    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeSFN), "/tmp/sfn.cfg");
}

TEST_F(ConfigEntries, AreIgnoredEntirelyOnASecuredBoard) {
    secureTheBoard();

    const Config board = configOf(
        "debugCfg=3\n"
        "L2SCTEnv=1\n"
        "doNotCollectLogOnExit=1\n"
        "iwfDeploymentCfgPath=/tmp/iwf.cfg\n");

    EXPECT_EQ(board.getDebugLvl(), 0);
    EXPECT_FALSE(board.isL2SCTEnv());
    EXPECT_TRUE(board.shouldCollectLogOnExit());
    EXPECT_EQ(board.getDeploymentConfigFile(dispatcherTypeIWF), "/etc/QEL_IWF.cfg");
    EXPECT_EQ(records(), std::vector<std::string>{});
}

TEST_F(ConfigEntries, AreIgnoredIfTheSecurityOfTheBoardIsUnknown) {
    failTheQueryForASecuredBoard();

    EXPECT_TRUE(configOf("doNotCollectLogOnExit=1\n").shouldCollectLogOnExit());
}

}  // namespace
