#include <filesystem>

#include "CollectionFixture.hpp"
#include "GrowingLog.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Sources that are too large. Each one and their sum are cut and reported. Everything else is as usual.
class LargeSourceTest : public CollectionFixture {
protected:
    static constexpr std::size_t mebibyte = 1U << 20U;
    static constexpr std::size_t sourceLimit = 16 * mebibyte;
    static constexpr std::size_t wholeLimit = 48 * mebibyte;

    /// A sparse file of zeros.
    static void makeSparse(const std::string& path, std::uintmax_t size = 3072 * mebibyte) {
        writeFile(path, "");
        fs::resize_file(path, size);
    }

    static std::string zeros(std::size_t size) { return std::string().append(size, '\0'); }

    static std::string cut(const std::string& source, std::size_t limit = sourceLimit) {
        return source + " is larger than " + std::to_string(limit) + " bytes, cut\n";
    }

    static std::string empty(const std::string& file) {
        return "Output of /tmp/korvel/" + file + ".log is empty\n";
    }

    /// Does not print megabytes in a failure.
    static void expectFiles(const Files& expected) {
        const Files files = workFiles();
        EXPECT_EQ(sizesOf(files), sizesOf(expected));
        EXPECT_TRUE(files == expected);
    }

private:
    static std::map<std::string, std::size_t> sizesOf(const Files& files) {
        std::map<std::string, std::size_t> sizes;
        for (const auto& [path, content] : files) {
            sizes[path] = content.size();
        }
        return sizes;
    }
};

TEST_F(LargeSourceTest, AStateFileIsCutAndTheRestIsCollected) {
    startBoard();
    makeSparse("/tmp/fuse/iwf/dispatcherCpu");

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat", "proxy"});

    EXPECT_EQ(outcome, success("", cut("/tmp/fuse/iwf/dispatcherCpu")));
    expectFiles(together({{{"fuse/iwf/dispatcherCpu.log", zeros(sourceLimit)}},
                          stateFiles("iwf", {"dmaStats"}),
                          replyFiles("iwf", statsCommands),
                          dumpFiles({"netfp_proxy"})}));
}

TEST_F(LargeSourceTest, AFileOfExactlyTheLimitIsCollectedCompletely) {
    startBoard();
    makeSparse("/tmp/fuse/iwf/tracing_on", sourceLimit);

    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf"});

    EXPECT_EQ(outcome, success());
    expectFiles(
        together({{{"fuse/iwf/tracing_on.log", zeros(sourceLimit)}}, replyFiles("iwf", infoCommands)}));
}

TEST_F(LargeSourceTest, ADumpIsCutAndTheFileStaysAndTheRestIsCollected) {
    startBoardWithFaults({"netfp_proxy=silent"});
    makeSparse("/tmp/netfp_proxy.log");

    const Outcome outcome = collect({"dump", "proxy", "server"});

    EXPECT_EQ(outcome, success("", cut("/tmp/netfp_proxy.log")));
    expectFiles(together({{{"ti/netfp_proxy.log", zeros(sourceLimit)}}, dumpFiles({"netfp_server"})}));
    EXPECT_EQ(fs::file_size("/tmp/netfp_proxy.log"), 3072 * mebibyte);
}

TEST_F(LargeSourceTest, ADumpThatIsCutIsPrintedAndNotedAsIncomplete) {
    startBoardWithFaults({"netfp_proxy=silent"});
    makeSparse("/tmp/netfp_proxy.log");

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, cut("/tmp/netfp_proxy.log"));
    EXPECT_TRUE(outcome.out == section("netfp_proxy", zeros(sourceLimit) + incompleteNote));
}

TEST_F(LargeSourceTest, ManySourcesAreCutAtTheLimitOfARun) {
    startBoard();
    for (const char* const state :
         {"iwf/tracing_on", "iwf/dispatcherCpu", "iwf/dmaStats", "sfn/tracing_on"}) {
        makeSparse(std::string("/tmp/fuse/") + state, 15 * mebibyte);
    }
    const Words states{"sfn/dispatcherCpu", "sfn/dmaStats"};

    const Outcome outcome = collect({"-d", "all", "dump", "dstat", "dinf", "slog", "proxy"});

    std::string err = cut("/tmp/fuse/sfn/tracing_on", 3 * mebibyte) + fullCollection;
    for (const std::string& state : states) {
        err += cut("/tmp/fuse/" + state, 0);
    }
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, testing::StartsWith(err + "Reply to SocketSvcInfo does not end, cut\n"));
    EXPECT_THAT(outcome.err, testing::EndsWith(cut("syslib_log_memory", 0) + cut("/tmp/netfp_proxy.log", 0) +
                                               empty("fuse/sfn/dispatcherCpu") + empty("fuse/sfn/dmaStats")));
    expectFiles(together({{{"fuse/iwf/tracing_on.log", zeros(15 * mebibyte)},
                           {"fuse/iwf/dispatcherCpu.log", zeros(15 * mebibyte)},
                           {"fuse/iwf/dmaStats.log", zeros(15 * mebibyte)},
                           {"fuse/sfn/tracing_on.log", zeros(3 * mebibyte)},
                           {"ti/netfp_proxy.log", ""},
                           {"ti/syslib_sm_log.log", ""}},
                          emptyReplyFiles("iwf", allCommands),
                          emptyReplyFiles("sfn", allCommands)}));
    EXPECT_EQ(contentOfFile("/tmp/netfp_proxy.log"), dumpText("netfp_proxy"));
}

TEST_F(LargeSourceTest, SharedMemoryLogsCountAsWell) {
    startBoard({.without = {"iwf_dispatcher", "sfn_dispatcher", "netfp_server"}, .fullLogs = true});
    const std::string history = GrowingLog("dispatcher_log_memory").text();
    const std::string syslib = GrowingLog("syslib_log_memory").text();
    makeSparse("/tmp/fuse/iwf/dispatcherCpu", sourceLimit);
    makeSparse("/tmp/fuse/iwf/dmaStats", sourceLimit);
    makeSparse("/tmp/fuse/iwf/fpBridgeStats", 13 * mebibyte);
    const std::size_t left = wholeLimit - 2 * sourceLimit - 13 * mebibyte - history.size();
    ASSERT_LT(left, syslib.size());

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat", "dlog", "slog"});

    EXPECT_EQ(outcome, success("", lines(3, timedOut) + cut("syslib_log_memory", left) + fullCollection));
    expectFiles(together({{{"fuse/iwf/dispatcherCpu.log", zeros(sourceLimit)},
                           {"fuse/iwf/dmaStats.log", zeros(sourceLimit)},
                           {"fuse/iwf/fpBridgeStats.log", zeros(13 * mebibyte)},
                           {"fuse/HistoryLog.log", history},
                           {"ti/syslib_sm_log.log", syslib.substr(0, left)}},
                          emptyReplyFiles("iwf", statsCommands)}));
}

}  // namespace
