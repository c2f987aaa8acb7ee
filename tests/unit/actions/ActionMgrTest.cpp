// The manager of the one-shot actions: look-up, execution, help.

#include <gtest/gtest.h>

#include "ActionMgr.hpp"
#include "ArgumentVector.hpp"
#include "KorvelHelp.hpp"
#include "Printed.hpp"
#include "VerboseMode.hpp"

namespace {

class ActionMgrTest : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    bool detect(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        bool detected = false;
        printed = printedBy([&] { detected = manager.detectKeywords(arguments.argc(), arguments.argv()); });
        return detected;
    }

    bool resolve(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        bool success = false;
        printed = printedBy([&] { success = manager.resolveRequest(arguments.argc(), arguments.argv()); });
        return success;
    }

    Korvel::ActionMgr manager;
    Printed printed;
};

}  // namespace

TEST_F(ActionMgrTest, IsNamedAction) {
    EXPECT_EQ(manager.getName(), "Action");
}

TEST_F(ActionMgrTest, DetectsNothingWithoutArguments) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(detect({}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, DetectsAnActionKeyword) {
    EXPECT_TRUE(detect({"getport"}));
    EXPECT_TRUE(detect({"getport", "eth0"}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, ComparesKeywordsWholeAndCaseSensitively) {
    for (const std::string word : {"GetPort", "GETPORT", "getpor", "getports", " getport", "getport ", ""}) {
        EXPECT_FALSE(detect({word})) << word;
    }
}

TEST_F(ActionMgrTest, LooksOnlyAtTheFirstArgument) {
    EXPECT_FALSE(detect({"eth0", "getport"}));
    EXPECT_FALSE(detect({"print", "getport", "getport"}));
}

TEST_F(ActionMgrTest, PrintsTheLookedUpWordInVerboseMode) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(detect({"print", "getport"}));
    EXPECT_EQ(printed, (Printed{.out = "Looking up Action keyword \"print\"\n"}));

    EXPECT_TRUE(detect({"getport"}));
    EXPECT_EQ(printed, (Printed{.out = "Looking up Action keyword \"getport\"\n"}));
}

TEST_F(ActionMgrTest, RunsTheActionAndReturnsItsResult) {
    EXPECT_TRUE(resolve({"getport", "4"}));
    EXPECT_EQ(printed, (Printed{.out = "4\n"}));

    EXPECT_FALSE(resolve({"getport"}));
    EXPECT_EQ(printed, (Printed{.err = "Get Port: Not enough arguments\n"}));
}

TEST_F(ActionMgrTest, PrintsTheActionBeforeItsOutputInVerboseMode) {
    Korvel::setVerboseMode(true);

    EXPECT_TRUE(resolve({"getport", "4"}));

    EXPECT_EQ(printed, (Printed{.out = "Executing \"getport\" action\n"
                                       "Get Port Entry\n"
                                       "Get Port: Retrieving port number for \"4\"\n"
                                       "Get Port: Using port number value\n"
                                       "4\n"}));
}

TEST_F(ActionMgrTest, FailsSilentlyForAnUnknownKeyword) {
    Korvel::setVerboseMode(true);

    EXPECT_FALSE(resolve({"print"}));

    EXPECT_EQ(printed, Printed{});
}

TEST_F(ActionMgrTest, ListsTheActionsInTheirOrder) {
    EXPECT_EQ(printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = managerHelp("Actions", "<>", "/bin/k")}));
}

TEST_F(ActionMgrTest, HasNoFurtherWorkAfterTheRequest) {
    EXPECT_TRUE(manager.run());
}
