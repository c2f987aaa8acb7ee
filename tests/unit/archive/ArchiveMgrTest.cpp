// The archiver as a request manager. Its endless run is tested with the whole program.

#include <gtest/gtest.h>

#include "ArchiveMgr.hpp"
#include "ArgumentVector.hpp"
#include "KorvelHelp.hpp"
#include "LogEntries.hpp"
#include "Printed.hpp"
#include "SystemLog.hpp"
#include "VerboseMode.hpp"

namespace {

class ArchiveMgrTest : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    bool detects(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        return manager.detectKeywords(arguments.argc(), arguments.argv());
    }

    Korvel::ArchiveMgr manager;
};

TEST_F(ArchiveMgrTest, IsNamedArchive) {
    EXPECT_EQ(manager.getName(), "Archive");
}

TEST_F(ArchiveMgrTest, DetectsItsKeywordBeforeAnyOtherArguments) {
    EXPECT_TRUE(detects({"archive"}));
    EXPECT_TRUE(detects({"archive", "getport"}));
}

TEST_F(ArchiveMgrTest, DetectsNothingElse) {
    EXPECT_FALSE(detects({}));
    for (const std::string word : {"Archive", "ARCHIVE", "archiv", "archives", " archive", "archive ", ""}) {
        EXPECT_FALSE(detects({word})) << word;
    }
    EXPECT_FALSE(detects({"getport", "archive"}));
}

TEST_F(ArchiveMgrTest, PrintsItsHelp) {
    EXPECT_EQ(printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = managerHelp("Archive", "<>", "/bin/k")}));
}

TEST_F(ArchiveMgrTest, ReportsNothingBeforeItRuns) {
    const std::vector<std::string> before = logEntries("dispatcher_log_memory");
    SystemLog systemLog;
    Korvel::setVerboseMode(true);

    const Printed printed = printedBy([&] { manager.logf(Korvel::logError, "an %s", "error"); });

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(systemLog.records(), std::vector<std::string>{});
    EXPECT_EQ(logEntries("dispatcher_log_memory"), before);
}

}  // namespace
