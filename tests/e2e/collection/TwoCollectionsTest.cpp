#include <filesystem>

#include "FakeTime.hpp"
#include "PackageFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;

namespace {

/// Two collections at the same time. They run one after the other, each as if it were alone.
class TwoCollectionsTest : public PackageFixture {
protected:
    static constexpr const char* waiting = "Another log collection is running, waiting for its end\n";

    TwoCollectionsTest() { startBoard(); }

    struct Both {
        Outcome first;
        Outcome second;
    };

    /// Starts two collections at the same time. Chance decides whether one has to wait, and which one.
    static Both collectBoth(const Words& first, const Words& second) {
        const std::unique_ptr<Process> one = startCollection(first);
        const std::unique_ptr<Process> other = startCollection(second);
        return {withoutWait(one->wait()), withoutWait(other->wait())};
    }

    /// Holds the lock as a long collection does, until it is destroyed.
    static std::unique_ptr<Process> holdLock() {
        fs::create_directories(workDir);
        auto holder = std::make_unique<Process>(
            Words{"flock", "--no-fork", workDir, "sh", "-c", "echo held; exec sleep 600"});
        while (holder->outSoFar() != "held\n") {
        }
        return holder;
    }

    static Outcome withoutWait(Outcome outcome) {
        if (outcome.err.starts_with(waiting)) {
            outcome.err.erase(0, std::string(waiting).size());
        }
        return outcome;
    }
};

TEST_F(TwoCollectionsTest, OneThatPrintsToASlowReaderDoesNotBlockTheOther) {
    // More than a pipe holds. Nobody reads it until the other collection has ended.
    writeFile("/tmp/fuse/iwf/tracing_on", std::string().append(1U << 20U, '.'));
    Process slow({"sh", "-c",
                  "korvel -d iwf print dinf | { until [ -e /tmp/other-ended ]; do sleep 0.05; done; cat > "
                  "/dev/null; }"});
    while (Board::received("iwf_dispatcher").empty()) {
    }

    const Outcome other = collect({"-d", "sfn", "dump", "dinf"});
    writeFile("/tmp/other-ended", "");

    EXPECT_EQ(withoutWait(other), success());
    EXPECT_EQ(slow.wait(), success());
}

TEST_F(TwoCollectionsTest, EachPrintsTheSameAsAlone) {
    const Words requests[] = {
        {"-d", "all", "print", "dinf", "dstat"},
        {"print", "proxy"},
        {"-d", "sfn", "print", "dinf", "server"},
    };
    for (const Words& request : requests) {
        const Outcome alone = collect(request);
        EXPECT_EQ(alone.err, "");
        for (const Words& other : requests) {
            SCOPED_TRACE(request.back() + " beside " + other.back());

            const auto [first, second] = collectBoth(request, other);

            EXPECT_EQ(first, alone);
            EXPECT_EQ(second.err, "");
        }
    }
}

TEST_F(TwoCollectionsTest, EachPacksTheSameAsAlone) {
    const Files all =
        together({stateFiles("iwf", allStates), stateFiles("sfn", allStates), replyFiles("iwf", allCommands),
                  replyFiles("sfn", allCommands), dumpFiles(netfpProcesses)});
    const Words coverage{"dinf", "dstat", "proxy", "server", "master", "resmgr"};
    const auto packed = [&](const std::string& keyword) {
        Words words{"-d", "all", keyword};
        words.insert(words.end(), coverage.begin(), coverage.end());
        return words;
    };
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE(round);
        fs::remove_all(workDir);

        const auto [first, second] = collectBoth(packed("pkg-pm"), packed("pkg-sdown"));

        EXPECT_EQ(first, success());
        EXPECT_EQ(second, success());
        for (const char* const suffix : {"_post_mortem.tgz", "_shutdown.tgz"}) {
            Files files = filesIn(package(suffix));
            std::erase_if(files, [](const auto& file) { return file.first.starts_with("linux/"); });
            EXPECT_EQ(files, all) << suffix;
        }
    }
}

TEST_F(TwoCollectionsTest, TheWaitingOneReportsItAndSendsNothingUntilTheOtherEnds) {
    std::unique_ptr<Process> holder = holdLock();
    const std::unique_ptr<Process> collection =
        startCollection({"-d", "iwf", "print", "dinf", "proxy"}, {.together = true});
    while (collection->outSoFar().empty()) {
    }
    EXPECT_EQ(collection->outSoFar(), waiting);
    EXPECT_EQ(requestsTo("iwf_dispatcher"), Words{});
    EXPECT_EQ(Board::received("netfp_proxy"), Words{});

    holder.reset();

    EXPECT_EQ(collection->wait(),
              success(waiting + printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands) +
                      section("netfp_proxy", dumpText("netfp_proxy"))));
}

TEST_F(TwoCollectionsTest, TheWaitingOneContinuesAfterAMinute) {
    const std::unique_ptr<Process> holder = holdLock();

    const Outcome outcome = collect({"dump", "slog"}, atSpeed(20));

    EXPECT_EQ(outcome, success("", waiting));
    EXPECT_EQ(filesBelow(workDir), Words{"ti/syslib_sm_log.log"});
}

TEST_F(TwoCollectionsTest, CommandsThatARunLeavesBehindHoldNoLock) {
    const Surroundings surroundings =
        withCommand("fp_linux_log_collect", "sleep 600 > /dev/null 2>&1 &\necho $! > /tmp/left-behind\n");
    ASSERT_EQ(collect({"-d", "iwf", "pkg-pm", "dinf"}, surroundings), success());

    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", dumpText("netfp_proxy"))));

    EXPECT_EQ(run({"sh", "-c", "kill $(cat /tmp/left-behind)"}), success());
}

TEST_F(TwoCollectionsTest, ACollectionDoesNotWaitForALogArchive) {
    const std::unique_ptr<Process> archive = startCollection({"archive"});
    while (!fs::exists("/tmp/korvel/archive/syslib/runtime.log")) {
    }

    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", dumpText("netfp_proxy"))));
}

}  // namespace
