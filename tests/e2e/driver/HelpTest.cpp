#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "KorvelHelp.hpp"
#include "Outcomes.hpp"
#include "Process.hpp"
#include "Trace.hpp"

TEST(Help, IsTheGoldenText) {
    expectOutput(korvel({"--help"}), korvelHelp());
}

TEST(Help, EndsTheRunAtAnyPosition) {
    expectOutput(korvel({"getport", "--help", "4"}), korvelHelp());
    expectOutput(korvel({"print", "--help"}), korvelHelp());
}

TEST(Help, ShowsThePathsOfEarlierOptionsSwapped) {
    expectOutput(korvel({"-c", "/tmp/client", "--help", "-m", "/tmp/late"}), korvelHelp("/tmp/client"));
    expectOutput(korvel({"-m", "/tmp/master", "--help"}), korvelHelp("/tmp/Korvel", "/tmp/master"));
}

TEST(Help, NamesTheProgramAsItWasStarted) {
    const Outcome outcome = run({"bash", "-c", "exec -a some/name korvel --help"});
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find('\n')), "some/name usage:");
    EXPECT_NE(outcome.out.find("\n        some/name getport eth1\n"), std::string::npos);
}

TEST(Help, IsPrintedBeforeThePlatformConfigurationIsRead) {
    std::vector<std::string> calls;
    expectOutput(runTraced("%file", {"korvel", "--help"}, calls), korvelHelp());
    EXPECT_FALSE(calls.empty());
    for (const std::string& call : calls) {
        EXPECT_EQ(call.find("/rom/"), std::string::npos) << call;
    }
}

TEST(Help, NeedsTheWholeOptionWord) {
    for (const char* const word : {"--HELP", "--hel", "-vd", "-V"}) {
        SCOPED_TRACE(word);
        const Outcome outcome = korvel({word});
        EXPECT_EQ(outcome.out,
                  "Did not detect a supported Keyword.\n"
                  "Use \"korvel --help\" for help.\n");
        EXPECT_EQ(outcome.status, 1);
    }
}
