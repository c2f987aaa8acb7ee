#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Process.hpp"
#include "TestFiles.hpp"
#include "Trace.hpp"

namespace {

/// The whole help text with the given paths; it shows them crosswise, and programs that read it rely on
/// that.
std::string helpText(const std::string& clientPath = "/tmp/Korvel",
                     const std::string& masterPath = "/tmp/NetfpMaster") {
    std::string text = contentOfFile(besideThisProgram("help.txt"));
    const auto replace = [&](const std::string& line, const std::string& path) {
        const std::size_t start = text.find(line) + line.size();
        text.replace(start, text.find('\n', start) - start, path);
    };
    replace("(optional path to the client socket, default: ", masterPath);
    replace("(optional path to the master socket, default: ", clientPath);
    return text;
}

void expectHelp(const Outcome& outcome, const std::string& text) {
    EXPECT_EQ(outcome.out, text);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

}  // namespace

TEST(Help, IsTheGoldenText) {
    expectHelp(korvel({"--help"}), helpText());
}

TEST(Help, EndsTheRunWhereverItStands) {
    expectHelp(korvel({"getport", "--help", "4"}), helpText());
    expectHelp(korvel({"print", "--help"}), helpText());
}

TEST(Help, ShowsTheEffectOfOptionsBeforeItCrosswise) {
    expectHelp(korvel({"-c", "/tmp/client", "--help", "-m", "/tmp/late"}), helpText("/tmp/client"));
    expectHelp(korvel({"-m", "/tmp/master", "--help"}), helpText("/tmp/Korvel", "/tmp/master"));
}

TEST(Help, NamesTheProgramAsItWasStarted) {
    const Outcome outcome = run({"bash", "-c", "exec -a some/name korvel --help"});
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "some/name usage:");
    EXPECT_NE(outcome.out.find("\n        some/name getport eth1\n"), std::string::npos);
}

TEST(Help, ComesBeforeThePlatformConfigurationIsRead) {
    std::vector<std::string> calls;
    expectHelp(runTraced("%file", {"korvel", "--help"}, calls), helpText());
    EXPECT_FALSE(calls.empty());
    for (const std::string& call : calls) {
        EXPECT_EQ(call.find("/rom/"), std::string::npos) << call;
    }
}

TEST(Help, OptionWordsAreMatchedWhole) {
    for (const char* const word : {"--HELP", "--hel", "-vd", "-V"}) {
        SCOPED_TRACE(word);
        const Outcome outcome = korvel({word});
        EXPECT_EQ(outcome.out,
                  "Did not detect a supported Keyword.\n"
                  "Use \"korvel --help\" for help.\n");
        EXPECT_EQ(outcome.status, 1);
    }
}
