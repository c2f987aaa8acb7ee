#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HelpText.hpp"
#include "PeerCatalog.hpp"
#include "ProgramOptions.hpp"
#include "ScenarioKeys.hpp"

using Boardsim::FaultGroup;
using Boardsim::FaultKind;
using Boardsim::helpText;
using Boardsim::peerCatalog;
using Boardsim::PeerEntry;
using Boardsim::ProgramOption;
using Boardsim::programOptions;
using Boardsim::ScenarioKey;
using Boardsim::scenarioKeys;
using Boardsim::shortHelpText;
using Boardsim::TrafficProfileName;
using Boardsim::trafficProfiles;

namespace {

/// A row of the help text that starts with the word `name`.
auto hasRow(const std::string& name) {
    return testing::AnyOf(testing::HasSubstr("\n" + name + " "), testing::HasSubstr("\n" + name + "\n"));
}

}  // namespace

TEST(HelpTextTest, HasLinesThatFitATerminal) {
    std::istringstream text(helpText() + shortHelpText());
    for (std::string line; std::getline(text, line);) {
        EXPECT_LE(line.size(), 80U) << line;
        EXPECT_FALSE(line.ends_with(' ')) << line;
    }
}

TEST(HelpTextTest, HasARowForEachOption) {
    for (const ScenarioKey& key : scenarioKeys()) {
        const std::string argument = key.argument.empty() ? "" : " " + std::string(key.argument);
        EXPECT_THAT(helpText(), hasRow("  --" + std::string(key.name) + argument));
        EXPECT_FALSE(key.help.empty()) << key.name;
    }
    for (const ProgramOption& option : programOptions()) {
        const std::string argument = option.argument.empty() ? "" : " " + std::string(option.argument);
        EXPECT_THAT(helpText(), hasRow("  " + option.spelling() + argument));
        EXPECT_FALSE(option.help.empty()) << option.name;
    }
}

TEST(HelpTextTest, HasEachOptionInItsShortFormToo) {
    for (const ScenarioKey& key : scenarioKeys()) {
        EXPECT_THAT(shortHelpText(), testing::HasSubstr("\n  --" + std::string(key.name)));
    }
    for (const ProgramOption& option : programOptions()) {
        EXPECT_THAT(shortHelpText(), testing::HasSubstr("\n  " + option.spelling()));
    }
    EXPECT_THAT(shortHelpText(), testing::Not(testing::HasSubstr("Faults of")));
}

TEST(HelpTextTest, ShowsTheDefaultOfEachOption) {
    EXPECT_THAT(helpText(), testing::HasSubstr("(default: sfn-master)"));
    EXPECT_THAT(helpText(), testing::HasSubstr("(default: 64M)"));
}

TEST(HelpTextTest, HasARowForEachTrafficProfile) {
    for (const TrafficProfileName& profile : trafficProfiles()) {
        EXPECT_THAT(helpText(), hasRow("  " + std::string(profile.name)));
        EXPECT_FALSE(profile.help.empty()) << profile.name;
    }
}

TEST(HelpTextTest, HasARowForEachPeer) {
    for (const PeerEntry& peer : peerCatalog()) {
        EXPECT_THAT(helpText(), hasRow("  " + std::string(peer.name)));
        EXPECT_FALSE(peer.help.empty()) << peer.name;
    }
}

TEST(HelpTextTest, HasARowForEachFaultAndNamesThePeersThatKnowIt) {
    for (const PeerEntry& peer : peerCatalog()) {
        for (const FaultGroup& group : peer.faults) {
            EXPECT_THAT(helpText(), testing::HasSubstr(" " + std::string(peer.name) + "=" +
                                                       std::string(group.prefix) + "FAULT"));
            for (const FaultKind& kind : group.kinds()) {
                const std::string number = kind.takesNumber() ? ":" + std::string(kind.number) : "";
                EXPECT_THAT(helpText(), hasRow("    " + std::string(kind.name) + number));
                EXPECT_FALSE(kind.help.empty()) << kind.name;
            }
        }
    }
}
