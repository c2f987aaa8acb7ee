// The manager of log collection: keywords and help.

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "CollectorMgr.hpp"
#include "KorvelHelp.hpp"
#include "Printed.hpp"
#include "VerboseMode.hpp"

namespace {

class CollectorMgrTest : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    bool detect(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        bool detected = false;
        EXPECT_EQ(printedBy([&] { detected = manager.detectKeywords(arguments.argc(), arguments.argv()); }),
                  Printed{});
        return detected;
    }

    Korvel::CollectorMgr manager;
};

}  // namespace

TEST_F(CollectorMgrTest, IsNamedLogCollection) {
    EXPECT_EQ(manager.getName(), "LogCollection");
}

TEST_F(CollectorMgrTest, DetectsOutputModesAndAllAnywhereInTheArguments) {
    for (const std::string word :
         {"print", "dump", "pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown", "all"}) {
        EXPECT_TRUE(detect({word})) << word;
        EXPECT_TRUE(detect({"netfp", "unknown", word})) << word;
        EXPECT_TRUE(detect({word, "unknown"})) << word;
    }
}

TEST_F(CollectorMgrTest, DoesNotDetectOtherCoverageKeywords) {
    for (const std::string word :
         {"netfp", "proxy", "server", "master", "resmgr", "slog", "dinf", "dstat", "dlog", "dall"}) {
        EXPECT_FALSE(detect({word})) << word;
    }
    EXPECT_FALSE(detect({"netfp", "dall"}));
}

TEST_F(CollectorMgrTest, DetectsNothingElse) {
    Korvel::setVerboseMode(true);
    EXPECT_FALSE(detect({}));
    for (const std::string word : {"", "Print", "ALL", "pkg-", "pkg-foo", "dumps", "all*", "getport"}) {
        EXPECT_FALSE(detect({word})) << word;
    }
}

TEST_F(CollectorMgrTest, IgnoresTheProgramName) {
    std::string name = "print";
    char* arguments[] = {name.data(), nullptr};

    EXPECT_FALSE(manager.detectKeywords(1, arguments));
}

TEST_F(CollectorMgrTest, PrintsItsHelp) {
    EXPECT_EQ(printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = managerHelp("Log Collection", "<>", "/bin/k")}));
}

TEST_F(CollectorMgrTest, HasNoFurtherWorkAfterTheRequest) {
    EXPECT_TRUE(manager.run());
}
