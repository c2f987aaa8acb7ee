#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Process.hpp"
#include "VerboseText.hpp"

namespace {

const std::string hint =
    "Did not detect a supported Keyword.\n"
    "Use \"korvel --help\" for help.\n";

}  // namespace

TEST(Routing, AnEmptyCommandLineGetsTheHint) {
    const Outcome outcome = korvel({});
    EXPECT_EQ(outcome.out, hint);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 1);
}

TEST(Routing, UnknownWordsGetTheHint) {
    const std::vector<std::string> commandLines[] = {
        {"foo"}, {"PRINT"}, {"GetPort", "eth1"}, {"foo", "getport", "4"}, {"netfp"}, {""}, {"-v="},
    };
    for (const auto& words : commandLines) {
        SCOPED_TRACE(words.front());
        const Outcome outcome = korvel(words);
        EXPECT_EQ(outcome.out, hint);
        EXPECT_EQ(outcome.err, "");
        EXPECT_EQ(outcome.status, 1);
    }
}

TEST(Routing, PrefersLogCollection) {
    // Both managers detect this line: it starts with the action's keyword, and "print" follows.
    const Outcome outcome = korvel({"getport", "print"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "Unknown parameter: getport\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST(Routing, NamesTheManagerThatFailedInVerboseMode) {
    const Outcome action = korvel({"-v", "getport"});
    EXPECT_EQ(action.out, verboseEnabled + isolatedCpusRecord +
                              "Looking up Action keyword \"getport\"\n"
                              "Detected Action keywords.\n"
                              "Executing \"getport\" action\n"
                              "Get Port Entry\n"
                              "Action Failed to process the request.\n");
    EXPECT_EQ(action.err, "Get Port: Not enough arguments\n");
    EXPECT_EQ(action.status, 1);

    const Outcome collection = korvel({"-v", "all"});
    EXPECT_EQ(collection.out, verboseEnabled + isolatedCpusRecord +
                                  "Detected LogCollection keywords.\n"
                                  "LogCollection Failed to process the request.\n");
    EXPECT_EQ(collection.err, "No parameters were specified\n");
    EXPECT_EQ(collection.status, 1);
}

TEST(Routing, AFailurePrintsNothingOnStandardOutputOutsideVerboseMode) {
    const Outcome outcome = korvel({"getport"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "Get Port: Not enough arguments\n");
    EXPECT_EQ(outcome.status, 1);
}
