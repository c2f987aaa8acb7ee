#include <filesystem>

#include <sys/stat.h>

#include "ConfigFixture.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

// How the lines of the configuration file are parsed, and the records about them.

namespace {

using Records = std::vector<std::string>;

constexpr const char* opening = "information: Opening '/rom/private/fpdispatcher.conf' file";

class ConfigSyntax : public ConfigFixture {
protected:
    /// The records about a file with this one line.
    Records recordsOf(const std::string& line) {
        configOf(line + "\n");
        Records all = records();
        EXPECT_EQ(all.front(), opening);
        all.erase(all.begin());
        return all;
    }
};

TEST_F(ConfigSyntax, TrimsKeysAndValues) {
    EXPECT_EQ(recordsOf(" \t key one \t= value two \r\v\f"),
              Records{"debug: Adding config entry [key one, value two]"});
}

TEST_F(ConfigSyntax, IgnoresASecondEqualsSignAndTheTextAfterIt) {
    EXPECT_EQ(recordsOf("key=value=more=still more"), Records{"debug: Adding config entry [key, value]"});
}

TEST_F(ConfigSyntax, SkipsACommentLine) {
    EXPECT_EQ(recordsOf("#key=value"), Records{});
}

TEST_F(ConfigSyntax, ReadsANumberSignAfterABlankAsText) {
    EXPECT_EQ(recordsOf(" #key=value"), Records{"debug: Adding config entry [#key, value]"});
}

TEST_F(ConfigSyntax, KeepsANumberSignAfterAValue) {
    EXPECT_EQ(recordsOf("key=value # why"), Records{"debug: Adding config entry [key, value # why]"});
}

TEST_F(ConfigSyntax, SkipsEmptyLines) {
    EXPECT_EQ(recordsOf(""), Records{});
}

TEST_F(ConfigSyntax, RejectsALineWithAnEmptyKey) {
    EXPECT_EQ(recordsOf("=value"), Records{"warning: Trying to add incomplete entry: '','value'"});
}

TEST_F(ConfigSyntax, RejectsALineWithABlankKey) {
    EXPECT_EQ(recordsOf("  =value"), Records{"warning: Trying to add incomplete entry: '','value'"});
}

TEST_F(ConfigSyntax, RejectsALineWithAnEmptyValue) {
    EXPECT_EQ(recordsOf("key="), (Records{
                                     "warning: Could not get entry from: key=",
                                     "warning: Trying to add incomplete entry: 'key',''",
                                 }));
}

TEST_F(ConfigSyntax, RejectsALineWithABlankValue) {
    EXPECT_EQ(recordsOf("key= "), Records{"warning: Trying to add incomplete entry: 'key',''"});
}

TEST_F(ConfigSyntax, RejectsALineWithoutAnEqualsSign) {
    EXPECT_EQ(recordsOf("just a line"), (Records{
                                            "warning: Could not get entry from: just a line",
                                            "warning: Trying to add incomplete entry: 'just a line',''",
                                        }));
}

TEST_F(ConfigSyntax, UsesTheLastOfSeveralLinesWithOneKey) {
    EXPECT_EQ(configOf("debugCfg=1\n"
                       "debugCfg=2\n")
                  .getDebugLvl(),
              2);
    EXPECT_EQ(records(), (Records{
                             opening,
                             "debug: Adding config entry [debugCfg, 1]",
                             "debug: Adding config entry [debugCfg, 2]",
                         }));
}

TEST_F(ConfigSyntax, KeepsAnEarlierValueIfALaterLineIsIncomplete) {
    EXPECT_EQ(configOf("debugCfg=1\n"
                       "debugCfg=\n")
                  .getDebugLvl(),
              1);
}

TEST_F(ConfigSyntax, DistinguishesKeysByCase) {
    EXPECT_EQ(configOf("DEBUGCFG=1\n").getDebugLvl(), 0);
}

TEST_F(ConfigSyntax, ReadsALastLineWithoutALineEnd) {
    EXPECT_EQ(configOf("\n# levels\ndebugCfg=6").getDebugLvl(), 6);
}

TEST_F(ConfigSyntax, LogsNothingOutsideVerboseMode) {
    Korvel::setVerboseMode(false);

    EXPECT_EQ(configOf("debugCfg=high\nL2SCTEnv=1\nkey\n").getDebugLvl(), 0);
    EXPECT_EQ(records(), Records{});
}

TEST_F(ConfigSyntax, ReportsAnUnreadableFile) {
    writeFile(configurationFile, "debugCfg=1\n");
    std::filesystem::permissions(configurationFile, std::filesystem::perms::none);

    EXPECT_EQ(config().getDebugLvl(), 0);
    EXPECT_EQ(records(),
              (Records{opening, "error: Error while opening '/rom/private/fpdispatcher.conf' file"}));
}

TEST_F(ConfigSyntax, ReportsAFileThatWouldBlock) {
    ASSERT_EQ(::mkfifo(configurationFile, S_IRUSR | S_IWUSR), 0);

    EXPECT_EQ(config().getDebugLvl(), 0);
    EXPECT_EQ(records(),
              (Records{opening, "error: Error while opening '/rom/private/fpdispatcher.conf' file"}));
}

}  // namespace
