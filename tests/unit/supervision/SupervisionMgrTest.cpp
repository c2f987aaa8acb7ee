// The supervision as a request manager, and its logging.

#include <csignal>
#include <filesystem>

#include "ArgumentVector.hpp"
#include "KorvelHelp.hpp"
#include "SupervisionMgrFixture.hpp"
#include "VerboseMode.hpp"

namespace {

class SupervisionMgrTest : public SupervisionMgrFixture {
protected:
    bool detect(const std::vector<std::string>& words) {
        ArgumentVector arguments(words);
        return manager.detectKeywords(arguments.argc(), arguments.argv());
    }
};

}  // namespace

TEST_F(SupervisionMgrTest, IsNamedSupervision) {
    EXPECT_EQ(manager.getName(), "Supervision");
}

TEST_F(SupervisionMgrTest, DetectsItsKeyword) {
    EXPECT_TRUE(detect({"supervision"}));
    EXPECT_TRUE(detect({"supervision", "print", "supervision"}));
}

TEST_F(SupervisionMgrTest, DetectsNothingElse) {
    EXPECT_FALSE(detect({}));
    EXPECT_FALSE(detect({"print", "supervision"}));
    for (const std::string word :
         {"", "Supervision", "SUPERVISION", "supervisio", "supervisions", " supervision", "supervision "}) {
        EXPECT_FALSE(detect({word})) << word;
    }
}

TEST_F(SupervisionMgrTest, IgnoresAKeywordBeyondTheArgumentCount) {
    ArgumentVector arguments({"supervision"});

    EXPECT_FALSE(manager.detectKeywords(1, arguments.argv()));
}

TEST_F(SupervisionMgrTest, PrintsItsHelp) {
    EXPECT_EQ(printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = managerHelp("Supervision", "<>", "/bin/k")}));
}

TEST_F(SupervisionMgrTest, AcceptsAnyArguments) {
    ArgumentVector arguments({"supervision"});

    EXPECT_TRUE(manager.resolveRequest(arguments.argc(), arguments.argv()));
}

TEST_F(SupervisionMgrTest, LogsInBothPlacesWithEachLevel) {
    manager.initialize();

    manager.logf(Korvel::logError, "port %d of %s", 7, "eth0");
    manager.logf(Korvel::logWarning, "warning");
    manager.logf(Korvel::logInformation, "information");
    manager.logf(Korvel::logDebug, "debug");

    expectLogged({error("port 7 of eth0"),
                  {"1 Supervision: warning", "<12>TIME supervision_test: warning"},
                  information("information"),
                  {"3 Supervision: debug", "<15>TIME supervision_test: debug"}});
}

TEST_F(SupervisionMgrTest, LogsOnlyInTheSystemLogBeforeItHasTheOther) {
    manager.logf(Korvel::logError, "early");

    EXPECT_EQ(systemLog.records(), std::vector{error("early").inSystemLog});
    EXPECT_EQ(sharedMemoryLog(), std::vector<std::string>{});
}

TEST_F(SupervisionMgrTest, PrintsNothingOfWhatItLogs) {
    manager.initialize();

    for (const bool verbose : {false, true}) {
        Korvel::setVerboseMode(verbose);
        EXPECT_EQ(printedBy([&] { manager.logf(Korvel::logError, "error"); }), Printed{});
    }

    Korvel::setVerboseMode(false);
    expectLogged({error("error"), error("error")});
}

TEST_F(SupervisionMgrTest, AbortsWithoutASharedMemoryLog) {
    std::filesystem::create_directories("/dev/shm/dispatcher_log_memory");

    EXPECT_EXIT(manager.initialize(), testing::KilledBySignal(SIGABRT),
                testing::Eq("SupervisionMgr: Assertion \"nullptr != logClient\" failed.\n"));
}
