#include <filesystem>

#include <sys/stat.h>

#include "CollectionFixture.hpp"
#include "GrowingLog.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Deployment;

namespace {

/// How the fuse collector handles the files of the dispatchers' state tree.
class FuseCollectionTest : public CollectionFixture {
protected:
    static constexpr const char* tracing = "/tmp/fuse/iwf/tracing_on";
    static constexpr const char* unreadable = "Error while opening /tmp/fuse/iwf/tracing_on\n";
    static constexpr const char* empty = "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n";

    /// The content of the state files.
    static Files states() {
        Files files = workFiles();
        std::erase_if(files, [](const auto& file) { return !file.first.starts_with("fuse/"); });
        return files;
    }

    /// Collects IWF's information while `tracing_on` has no text.
    static void expectNoText(const std::string& err) {
        EXPECT_EQ(collect({"-d", "iwf", "print", "dump", "dinf"}),
                  success(section("Tracing Enabled", "") + printedReplies("iwf", infoCommands), err + empty));
        EXPECT_EQ(states(), Files{});
    }

    /// Collects IWF's information with this text in `tracing_on`.
    static void expectText(const std::string& text) {
        writeFile(tracing, text);
        EXPECT_EQ(collect({"-d", "iwf", "print", "dump", "dinf"}),
                  success(section("Tracing Enabled", text) + printedReplies("iwf", infoCommands)));
        EXPECT_EQ(states(), (Files{{"fuse/iwf/tracing_on.log", text}}));
    }
};

TEST_F(FuseCollectionTest, DlogCollectsOnlyTheHistoryLogForAnyInstances) {
    startBoardWithout({"iwf_dispatcher"});
    for (const std::string instance : {"iwf", "sfn", "all"}) {
        SCOPED_TRACE(instance);
        const GrowingLog history("dispatcher_log_memory");

        const Outcome outcome = collect({"-d", instance, "dump", "dlog"});

        EXPECT_EQ(outcome, success());
        const Files files = workFiles();
        EXPECT_EQ(files,
                  (Files{{"fuse/HistoryLog.log", history.versionIn(files.at("fuse/HistoryLog.log"))}}));
        fs::remove_all(workDir);
    }
}

TEST_F(FuseCollectionTest, BridgeStatisticsOfIwfAreCollectedWithoutAnSfnTree) {
    startBoard({.deployment = Deployment::iwf});

    const Outcome outcome = collect({"print", "dump", "dstat"});

    const Words bridge{"dispatcherCpu", "dmaStats", "fpBridgeStats"};
    EXPECT_EQ(outcome, success(printedStates("iwf", bridge) + printedReplies("iwf", statsCommands)));
    EXPECT_EQ(states(), stateFiles("iwf", bridge));
}

TEST_F(FuseCollectionTest, BridgeStatisticsAreNotCollectedWithAnSfnTree) {
    startBoard();

    const Outcome outcome = collect({"-d", "iwf", "print", "dump", "dstat"});

    EXPECT_EQ(outcome, success(printedStates("iwf", statsStates) + printedReplies("iwf", statsCommands)));
    EXPECT_EQ(states(), stateFiles("iwf", statsStates));
}

TEST_F(FuseCollectionTest, BridgeStatisticsArePartOfStatisticsOnly) {
    startBoard({.deployment = Deployment::iwf});

    collect({"dump", "dinf"});

    EXPECT_EQ(states(), stateFiles("iwf", infoStates));
}

TEST_F(FuseCollectionTest, BridgeStatisticsOfSfnAreNeverCollectedEvenWithoutAnSfnTree) {
    startBoard({.deployment = Deployment::iwf});

    const Outcome outcome = collect({"-d", "sfn", "dump", "dstat"});

    EXPECT_EQ(outcome, success("",
                               "Error while opening /tmp/fuse/sfn/dispatcherCpu\n"
                               "Error while opening /tmp/fuse/sfn/dmaStats\n" +
                                   lines(3, timedOut) +
                                   "Output of /tmp/korvel/fuse/sfn/dispatcherCpu.log is empty\n"
                                   "Output of /tmp/korvel/fuse/sfn/dmaStats.log is empty\n"));
    EXPECT_EQ(states(), Files{});
}

TEST_F(FuseCollectionTest, AFileInPlaceOfTheSfnTreeCountsAsNoTree) {
    startBoard({.deployment = Deployment::iwf});
    writeFile("/tmp/fuse/sfn", "");

    collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(states(), stateFiles("iwf", {"dispatcherCpu", "dmaStats", "fpBridgeStats"}));
}

TEST_F(FuseCollectionTest, ALinkToADirectoryCountsAsAnSfnTree) {
    startBoard({.deployment = Deployment::iwf});
    fs::create_directory_symlink("/tmp/fuse/iwf", "/tmp/fuse/sfn");

    collect({"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(states(), stateFiles("iwf", statsStates));
}

TEST_F(FuseCollectionTest, AnSfnTreeThatCannotBeAccessedCountsAsNone) {
    startBoard();

    const Outcome outcome =
        collectInjected({.faults = {"%%stat:error=EACCES"}, .path = "/tmp/fuse/sfn/", .inChildren = true},
                        {"-d", "iwf", "dump", "dstat"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(states(), stateFiles("iwf", {"dispatcherCpu", "dmaStats", "fpBridgeStats"}));
}

TEST_F(FuseCollectionTest, AnEmptyStateFileHasAHeaderAndNoFile) {
    startBoard();
    writeFile(tracing, "");
    expectNoText("");
}

TEST_F(FuseCollectionTest, AMissingStateFileIsReported) {
    startBoard();
    fs::remove(tracing);
    expectNoText(unreadable);
}

TEST_F(FuseCollectionTest, AStateFileThatMayNotBeReadIsReported) {
    startBoard();
    fs::permissions(tracing, fs::perms::none);
    expectNoText(unreadable);
}

TEST_F(FuseCollectionTest, ADirectoryInPlaceOfAStateFileIsReported) {
    startBoard();
    fs::remove(tracing);
    fs::create_directory(tracing);
    expectNoText(unreadable);
}

TEST_F(FuseCollectionTest, AFifoInPlaceOfAStateFileIsReportedAndNotWaitedFor) {
    startBoard();
    fs::remove(tracing);
    ASSERT_EQ(::mkfifo(tracing, 0600), 0);
    expectNoText(unreadable);
}

TEST_F(FuseCollectionTest, ALinkToAStateFileIsFollowed) {
    startBoard();
    fs::remove(tracing);
    fs::create_symlink("/tmp/fuse/sfn/dmaStats", tracing);
    expectText(stateText("sfn", "dmaStats"));
}

TEST_F(FuseCollectionTest, AStateFileOfTwoMebibytesIsCollectedWhole) {
    startBoard();
    std::string text;
    for (int line = 0; text.size() < 2U << 20U; ++line) {
        text += "counter " + std::to_string(line) + "\n";
    }
    expectText(text);
}

TEST_F(FuseCollectionTest, EveryByteOfAStateFileIsCollected) {
    startBoard();
    std::string bytes = "no line end at the end:";
    for (int byte = 0; byte <= 255; ++byte) {
        bytes += static_cast<char>(byte);
    }
    expectText(bytes);
}

TEST_F(FuseCollectionTest, AStateFileThatFailsInTheMiddleIsReportedAndKeptUpToThere) {
    startBoard();
    std::string text(100'000, '.');
    writeFile(tracing, text);

    const Outcome outcome =
        collectInjected({.faults = {"read:error=EIO:when=2"}, .path = tracing, .inChildren = true},
                        {"-d", "iwf", "dump", "dinf"});

    EXPECT_EQ(outcome, success("", "Error while reading /tmp/fuse/iwf/tracing_on: Input/output error\n"));
    text.resize(65536);
    EXPECT_EQ(states(), (Files{{"fuse/iwf/tracing_on.log", text}}));
}

}  // namespace
