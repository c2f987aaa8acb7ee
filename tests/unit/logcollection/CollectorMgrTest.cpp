// The manager of log collection: keywords and help.

#include <gtest/gtest.h>

#include "ArgumentVector.hpp"
#include "CollectorMgr.hpp"
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

TEST_F(CollectorMgrTest, ClaimsEveryOutputModeAndAllAnywhereAmongTheArguments) {
    for (const std::string word :
         {"print", "dump", "pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown", "all"}) {
        EXPECT_TRUE(detect({word})) << word;
        EXPECT_TRUE(detect({"netfp", "unknown", word})) << word;
        EXPECT_TRUE(detect({word, "unknown"})) << word;
    }
}

TEST_F(CollectorMgrTest, DoesNotClaimOtherCoverageKeywords) {
    for (const std::string word :
         {"netfp", "proxy", "server", "master", "resmgr", "slog", "dinf", "dstat", "dlog", "dall"}) {
        EXPECT_FALSE(detect({word})) << word;
    }
    EXPECT_FALSE(detect({"netfp", "dall"}));
}

TEST_F(CollectorMgrTest, ClaimsNothingElse) {
    Korvel::setVerboseMode(true);
    EXPECT_FALSE(detect({}));
    for (const std::string word : {"", "Print", "ALL", "pkg-", "pkg-foo", "dumps", "all*", "getport"}) {
        EXPECT_FALSE(detect({word})) << word;
    }
}

TEST_F(CollectorMgrTest, DoesNotLookAtTheProgramsName) {
    std::string name = "print";
    char* arguments[] = {name.data(), nullptr};

    EXPECT_FALSE(manager.detectKeywords(1, arguments));
}

TEST_F(CollectorMgrTest, ExplainsItsKeywords) {
    EXPECT_EQ(printedBy([&] { manager.printHelpMsg("<>", "/bin/k"); }),
              (Printed{.out = "  Log Collection:\n"
                              "<>== Output Mode ==\n"
                              "<>  print    (prints output on console)\n"
                              "<>  dump     (dumps output to files)\n"
                              "<>  pkg      (creates package)\n"
                              "<>  pkg-trs  (creates package without timestamp)\n"
                              "<>  pkg-sup  (creates package for ZELMO NetfpSupervisor Service)\n"
                              "<>  pkg-pm   (creates post mortem package)\n"
                              "<>  pkg-sdown(creates package on system shutdown - has to be enabled in "
                              "fpdispatcher.conf)\n"
                              "<>== Coverage ==\n"
                              "<>  all*     (default - all outputs)\n"
                              "<>  netfp    (netfp_proxy + netpf_server output)\n"
                              "<>  proxy    (netfp_proxy output)\n"
                              "<>  server   (netpf_server output)\n"
                              "<>  dall*    (all dispatcher outputs)\n"
                              "<>  dinf*    (dispatcher info)\n"
                              "<>  dstat*   (dispatcher statistics)\n"
                              "<>  dlog     (dispatcher logs)\n"
                              "<>    (*) possible performance impact\n"
                              "\n"
                              "<>== Examples ==\n"
                              "<>  /bin/k pkg\n"
                              "<>  /bin/k -v print pkg netfp dall\n"
                              "<>  /bin/k print dump server dinf dstat proxy\n"
                              "\n"}));
}

TEST_F(CollectorMgrTest, HasNothingLeftToDoAfterTheRequest) {
    EXPECT_TRUE(manager.run());
}
