#include <filesystem>

#include "CollectionFixture.hpp"
#include "TestFiles.hpp"

namespace {

using CollectionKeywordTest = CollectionFixture;

constexpr const char* noKeyword = "Did not detect a supported Keyword.\nUse \"korvel --help\" for help.\n";

TEST_F(CollectionKeywordTest, AnUnknownKeywordStopsTheRunBeforeAnythingIsCollected) {
    startBoard();

    const Outcome outcome = collect({"print", "foo", "dump"});

    EXPECT_EQ(outcome, failure("", "Unknown parameter: foo\n"));
    EXPECT_FALSE(std::filesystem::exists(workDir));
    EXPECT_EQ(requestsTo("iwf_dispatcher"), Words{});
}

TEST_F(CollectionKeywordTest, OnlyTheFirstUnknownKeywordIsNamed) {
    startBoard();
    EXPECT_EQ(collect({"foo", "print", "bar"}), failure("", "Unknown parameter: foo\n"));
}

TEST_F(CollectionKeywordTest, KeywordsAreWholeWordsInLowerCase) {
    startBoard();
    for (const std::string word : {"Dinf", "DUMP", "dump ", "pkg-", "net", "printx", ""}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(collect({"print", word}), failure("", "Unknown parameter: " + word + "\n"));
    }
}

TEST_F(CollectionKeywordTest, VerboseModeReportsThatTheRequestFailed) {
    startBoard();
    EXPECT_EQ(collect({"-v", "print", "foo"}),
              failure(verboseStart("", {}) + "LogCollection Failed to process the request.\n",
                      "Unknown parameter: foo\n"));
}

TEST_F(CollectionKeywordTest, AllIsDetectedButLacksAnOutputMode) {
    startBoard();
    EXPECT_EQ(collect({"all"}), failure("", "No parameters were specified\n"));
    EXPECT_EQ(collect({"all", "dinf", "slog"}), failure("", "No parameters were specified\n"));
    EXPECT_FALSE(std::filesystem::exists(workDir));
}

TEST_F(CollectionKeywordTest, OtherCoverageKeywordsAloneAreNotDetected) {
    startBoard();
    for (const std::string word :
         {"dinf", "netfp", "proxy", "server", "master", "resmgr", "slog", "dstat", "dlog", "dall"}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(collect({word}), failure(noKeyword, ""));
    }
}

TEST_F(CollectionKeywordTest, EveryOutputModeIsDetected) {
    startBoard();
    for (const std::string word : {"print", "dump", "pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown"}) {
        SCOPED_TRACE(word);
        EXPECT_EQ(collect({"dinf", word, "foo"}), failure("", "Unknown parameter: foo\n"));
    }
}

TEST_F(CollectionKeywordTest, AShutdownPackageThatIsNotEnabledIsSkippedSilently) {
    startBoard();
    writeFile("/rom/private/fpdispatcher.conf", "doNotCollectLogOnExit=1\n");

    const Outcome outcome = collect({"pkg-sdown"});

    EXPECT_EQ(outcome, success());
    EXPECT_FALSE(std::filesystem::exists(workDir));
    EXPECT_EQ(filesBelow(packageDir), Words{});
}

TEST_F(CollectionKeywordTest, AShutdownPackageThatIsNotEnabledSkipsTheWholeRequest) {
    startBoard();
    writeFile("/rom/private/fpdispatcher.conf", "doNotCollectLogOnExit=1\n");

    const Outcome outcome = collect({"print", "dump", "pkg-sdown", "pkg", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_FALSE(std::filesystem::exists(workDir));
}

TEST_F(CollectionKeywordTest, AShutdownPackageIsCreatedIfTheConfigurationAllowsIt) {
    startBoard();
    writeFile("/rom/private/fpdispatcher.conf", "doNotCollectLogOnExit=0\n");

    const Outcome outcome = collect({"pkg-sdown", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesBelow(packageDir), Words{"netfp_logs_shutdown.tgz"});
}

TEST_F(CollectionKeywordTest, OtherPackagesNeedNoPermissionOfTheConfiguration) {
    startBoard();
    writeFile("/rom/private/fpdispatcher.conf", "doNotCollectLogOnExit=1\n");

    const Outcome outcome = collect({"pkg-pm", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesBelow(packageDir), Words{"netfp_logs_post_mortem.tgz"});
}

}  // namespace
