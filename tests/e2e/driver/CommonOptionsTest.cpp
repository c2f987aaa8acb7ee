#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Outcomes.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"
#include "VerboseText.hpp"

using Boardsim::Board;
using Boardsim::Deployment;

namespace {

/// The dispatcher instances that a run queried, derived from the files that it wrote.
std::vector<std::string> instancesAsked(std::vector<std::string> options) {
    run({"rm", "-rf", "/tmp/korvel"});
    options.insert(options.end(), {"dump", "dinf"});
    const Outcome outcome = korvel(options);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    std::vector<std::string> instances;
    for (const std::string& file : filesBelow("/tmp/korvel/mmi")) {
        instances.push_back(file.substr(0, file.find('/')));
    }
    return instances;
}

using Names = std::vector<std::string>;

}  // namespace

TEST(CommonOptions, AreRemovedBeforeTheManagersSeeTheArguments) {
    expectOutput(korvel({"-v", "-d", "all", "getport", "4"}),
                 verboseEnabled + "Communicating with both dispatchers\n" + getPort4Lines);
}

TEST(CommonOptions, MayFollowTheKeyword) {
    expectOutput(korvel({"getport", "-d", "sfn", "4", "-v"}), verboseEnabled + getPort4Lines);
    expectOutput(korvel({"getport", "-v", "4", "-d", "iwf"}),
                 verboseEnabled + "Communicating with iwf dispatcher\n" + getPort4Lines);
}

TEST(CommonOptions, PrintTheirEffectInVerboseMode) {
    expectOutput(korvel({"-v", "-c", "/tmp/client", "-m", "/tmp/master", "-d", "sfn", "getport", "4"}),
                 verboseEnabled +
                     "Using provided client path /tmp/client\n"
                     "Using provided master path /tmp/master\n"
                     "Communicating with sfn dispatcher\n" +
                     getPort4Lines);
}

TEST(CommonOptions, AreSilentWithoutVerboseMode) {
    expectOutput(korvel({"-c", "/tmp/client", "-m", "/tmp/master", "-d", "bogus", "getport", "4"}), "4\n");
}

TEST(CommonOptions, TakeAnyNextWordAsTheirValue) {
    expectOutput(korvel({"-v", "-c", "-v", "-m", "--help", "getport", "4"}),
                 verboseEnabled + "Using provided client path -v\nUsing provided master path --help\n" +
                     getPort4Lines);
}

TEST(CommonOptions, WithoutAValueAreDroppedAndReportedInVerboseMode) {
    const struct {
        std::string option;
        std::string message;
    } cases[] = {
        {"-c", "Found -c option without client socket path\n"},
        {"-m", "Found -m option without master socket path\n"},
        {"-d", "Found -d option without dispatcher instance\n"},
    };
    for (const auto& [option, message] : cases) {
        SCOPED_TRACE(option);
        std::string told = verboseEnabled + message;
        told += getPort4Lines;
        expectOutput(korvel({"-v", "getport", "4", option}), told);
        expectOutput(korvel({"getport", "4", option}), "4\n");
    }
}

TEST(CommonOptions, DispatcherOptionTakesAVerboseOptionAsItsValue) {
    // Here "-v" is the value of "-d", not an option.
    expectOutput(korvel({"getport", "4", "-d", "-v"}), "4\n");
}

TEST(CommonOptions, SelectDispatchers) {
    const Board board({.deployment = Deployment::sfnMaster});
    EXPECT_EQ(instancesAsked({"-d", "iwf"}), Names{"iwf"});
    EXPECT_EQ(instancesAsked({"-d", "sfn"}), Names{"sfn"});
    EXPECT_EQ(instancesAsked({"-d", "all"}), (Names{"iwf", "sfn"}));
    EXPECT_EQ(instancesAsked({"-d", "sfn", "-d", "iwf"}), (Names{"iwf", "sfn"}));
    EXPECT_EQ(instancesAsked({"-d", "iwf", "-d", "iwf", "-d", "bogus"}), Names{"iwf"});
}

TEST(CommonOptions, UnknownDispatcherSelectsThePlatformsDefault) {
    const Board board({.deployment = Deployment::sfnAntenna});
    EXPECT_EQ(instancesAsked({"-d", "bogus"}), Names{"sfn"});
    EXPECT_EQ(instancesAsked({"-d", "ALL"}), Names{"sfn"});
}

TEST(CommonOptions, UnknownDispatcherIsReportedInVerboseMode) {
    expectOutput(korvel({"-v", "-d", "both", "getport", "4"}),
                 verboseEnabled + "Invalid dispatcher type specified: both. Using default instance (IWF)\n" +
                     getPort4Lines);
}
