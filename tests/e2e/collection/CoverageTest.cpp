#include <algorithm>
#include <filesystem>

#include "CollectionFixture.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;
using Boardsim::Deployment;

namespace {

/// Which files a run leaves, by coverage keyword.
class CollectionCoverageTest : public CollectionFixture {
protected:
    /// The files of a dump in the work directory.
    static Words filesOf(Words keywords) {
        keywords.insert(keywords.begin(), "dump");
        EXPECT_EQ(collect(keywords), success());
        return filesBelow(workDir);
    }

    /// The paths with a directory before them.
    static Words in(const std::string& directory, const Words& names) {
        Words paths(names.size());
        std::transform(names.begin(), names.end(), paths.begin(),
                       [&](const std::string& name) { return directory + "/" + name + ".log"; });
        return paths;
    }

    static Words sorted(const std::vector<Words>& parts) {
        Words all;
        for (const Words& part : parts) {
            all.insert(all.end(), part.begin(), part.end());
        }
        std::sort(all.begin(), all.end());
        return all;
    }

    const Words fuseInfo = sorted({in("fuse/iwf", infoStates), in("fuse/sfn", infoStates)});
    const Words fuseStats = sorted({in("fuse/iwf", statsStates), in("fuse/sfn", statsStates)});
    const Words history{"fuse/HistoryLog.log"};
    const Words mmiInfo = sorted({in("mmi/iwf", infoCommands), in("mmi/sfn", infoCommands)});
    const Words mmiStats = sorted({in("mmi/iwf", statsCommands), in("mmi/sfn", statsCommands)});
    const Words wholeDispatchers = sorted({fuseInfo, fuseStats, history, mmiInfo, mmiStats});
    const Words syslib{"ti/syslib_sm_log.log"};
    const Words wholeTi = sorted({in("ti", netfpProcesses), syslib});
};

TEST_F(CollectionCoverageTest, EveryKeywordAloneCollectsItsPart) {
    const struct {
        std::string keyword;
        Words files;
    } cases[] = {
        {"all", sorted({wholeDispatchers, wholeTi})},
        {"netfp", wholeTi},
        {"proxy", in("ti", {"netfp_proxy"})},
        {"server", in("ti", {"netfp_server"})},
        {"master", in("ti", {"netfp_master"})},
        {"resmgr", in("ti", {"resmgr_server"})},
        {"slog", syslib},
        {"dinf", sorted({fuseInfo, mmiInfo})},
        {"dstat", sorted({fuseStats, mmiStats})},
        {"dlog", history},
        {"dall", wholeDispatchers},
    };
    startBoard();
    for (const auto& [keyword, files] : cases) {
        SCOPED_TRACE(keyword);
        EXPECT_EQ(filesOf({keyword}), files);
        std::filesystem::remove_all(workDir);
    }
}

TEST_F(CollectionCoverageTest, WithoutAKeywordEverythingIsCollected) {
    startBoard();
    EXPECT_EQ(filesOf({}), sorted({wholeDispatchers, wholeTi}));
}

TEST_F(CollectionCoverageTest, KeywordsAddUpInAnyOrder) {
    const struct {
        Words keywords;
        Words files;
    } cases[] = {
        {{"proxy", "netfp"}, wholeTi},
        {{"netfp", "proxy"}, wholeTi},
        {{"dlog", "dall"}, wholeDispatchers},
        {{"dall", "dlog"}, wholeDispatchers},
        {{"server", "all"}, sorted({wholeDispatchers, wholeTi})},
        {{"all", "server"}, sorted({wholeDispatchers, wholeTi})},
        {{"server", "dinf", "dstat", "proxy"},
         sorted({in("ti", {"netfp_proxy", "netfp_server"}), fuseInfo, fuseStats, mmiInfo, mmiStats})},
        {{"slog", "dlog", "slog"}, sorted({history, syslib})},
    };
    startBoard();
    for (const auto& [keywords, files] : cases) {
        SCOPED_TRACE(keywords.front() + " " + keywords.back());
        EXPECT_EQ(filesOf(keywords), files);
        std::filesystem::remove_all(workDir);
    }
}

TEST_F(CollectionCoverageTest, DinfAsksForInformationOnly) {
    startBoard();

    collect({"dump", "dinf"});

    EXPECT_EQ(requestsTo("iwf_dispatcher"), infoCommands);
    EXPECT_EQ(requestsTo("sfn_dispatcher"), infoCommands);
}

TEST_F(CollectionCoverageTest, DstatAsksForStatisticsOnly) {
    startBoard();

    collect({"dump", "dstat"});

    EXPECT_EQ(requestsTo("iwf_dispatcher"), statsCommands);
    EXPECT_EQ(requestsTo("sfn_dispatcher"), statsCommands);
}

TEST_F(CollectionCoverageTest, DlogSendsNoRequestAndNoSignal) {
    startBoard();

    collect({"dump", "dlog"});

    EXPECT_EQ(requestsTo("iwf_dispatcher"), Words{});
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});
}

TEST_F(CollectionCoverageTest, SlogSignalsNoProcess) {
    startBoard();

    collect({"dump", "slog"});

    for (const std::string& process : netfpProcesses) {
        SCOPED_TRACE(process);
        EXPECT_EQ(Board::received(process), Words{});
    }
}

TEST_F(CollectionCoverageTest, OnlyTheSelectedProcessIsSignalledOnce) {
    startBoard();

    collect({"dump", "server"});

    EXPECT_EQ(Board::received("netfp_server"), Words{"SIGUSR1"});
    for (const std::string process : {"netfp_proxy", "netfp_master", "resmgr_server"}) {
        SCOPED_TRACE(process);
        EXPECT_EQ(Board::received(process), Words{});
    }
}

TEST_F(CollectionCoverageTest, OnlySfnIsAskedIfOnlySfnIsSelected) {
    startBoard();

    const Outcome outcome = collect({"-v", "-d", "sfn", "dump", "dinf"});

    EXPECT_EQ(outcome, success(verboseStart("Communicating with sfn dispatcher\n", {"ti"}) +
                               "Starting log collection from fuse file system...\n"
                               "Reading /tmp/fuse/sfn/tracing_on...\n"
                               "Starting log collection from MMI service in dispatcher instance sfn...\n"
                               "Binding to port: 8778\n"
                               "Sending MMI request: SocketSvcInfo\n"
                               "Response received successfully\n"));
    EXPECT_EQ(workFiles(), together({stateFiles("sfn", infoStates), replyFiles("sfn", infoCommands)}));
    EXPECT_EQ(requestsTo("iwf_dispatcher"), Words{});
    EXPECT_EQ(requestsTo("sfn_dispatcher"), infoCommands);
}

TEST_F(CollectionCoverageTest, TheBoardDecidesWhichInstancesAreAskedIfNoneIsSelected) {
    const struct {
        Deployment deployment;
        Files files;
    } cases[] = {
        {Deployment::iwf, replyFiles("iwf", infoCommands)},
        {Deployment::sfnMaster, together({replyFiles("iwf", infoCommands), replyFiles("sfn", infoCommands)})},
        {Deployment::sfnAntenna, replyFiles("sfn", infoCommands)},
    };
    for (const auto& [deployment, replies] : cases) {
        SCOPED_TRACE(static_cast<int>(deployment));
        startBoard({.deployment = deployment});

        collect({"dump", "dinf"});

        Files files = workFiles();
        std::erase_if(files, [](const auto& file) { return file.first.starts_with("fuse/"); });
        EXPECT_EQ(files, replies);
        std::filesystem::remove_all(workDir);
    }
}

}  // namespace
