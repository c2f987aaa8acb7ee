#include <algorithm>
#include <csignal>
#include <filesystem>

#include <sys/resource.h>

#include "CollectionFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Runs with a limit of 64 MiB of memory of their own. The limit suffices for any amount of logs.
class MemoryLimitTest : public CollectionFixture {
protected:
    const Surroundings limited{.limits = {{RLIMIT_DATA, 64U << 20U}}};

    static void makeHuge(const std::string& path) {
        writeFile(path, "");
        fs::resize_file(path, std::uintmax_t{3} << 30U);
    }

    static std::string cut(const std::string& path, std::size_t limit) {
        return path + " is larger than " + std::to_string(limit) + " bytes, cut\n";
    }

    /// The errors for four sources if there is no room for the last one.
    static std::string cutFour(const Words& paths) {
        constexpr std::size_t limit = 16U << 20U;
        return cut(paths[0], limit) + cut(paths[1], limit) + cut(paths[2], limit) + fullCollection +
               cut(paths[3], 0);
    }
};

TEST_F(MemoryLimitTest, HugeStateFilesAreCollected) {
    startBoard();
    const Words states{"/tmp/fuse/iwf/dispatcherCpu", "/tmp/fuse/iwf/dmaStats", "/tmp/fuse/sfn/dispatcherCpu",
                       "/tmp/fuse/sfn/dmaStats"};
    std::for_each(states.begin(), states.end(), makeHuge);

    const Outcome outcome = collect({"-d", "all", "print", "dstat"}, limited);

    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, testing::StartsWith(cutFour(states) + "Reply to"));
    EXPECT_THAT(outcome.err, testing::Not(testing::HasSubstr("Error")));
}

TEST_F(MemoryLimitTest, HugeDumpsAreCollected) {
    startBoard();
    Words dumps;
    for (const std::string& process : netfpProcesses) {
        dumps.push_back("/tmp/" + process + ".log");
        makeHuge(dumps.back());
        ::kill(board().pid(process), SIGSTOP);
    }

    const Outcome outcome = collect({"dump", "proxy", "server", "master", "resmgr"}, limited);

    EXPECT_EQ(outcome, success("", cutFour(dumps)));
}

TEST_F(MemoryLimitTest, EndlessRepliesAreCollected) {
    startBoardWithFaults({"iwf_dispatcher=endless"});

    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf", "dstat"}, limited);

    EXPECT_EQ(outcome, success("",
                               "Reply to SocketSvcInfo does not end, cut\n"
                               "Reply to SocketSvcCounters does not end, cut\n"
                               "Reply to ReassemblyCounters does not end, cut\n" +
                                   fullCollection + "Reply to HeapStats does not end, cut\n"));
    std::size_t gathered = 0;
    for (const auto& [path, content] : workFiles()) {
        gathered += content.size();
    }
    EXPECT_EQ(gathered, 48U << 20U);
}

TEST_F(MemoryLimitTest, AHugeConfigurationFileTakesNoMemory) {
    startBoard();
    makeHuge("/rom/private/fpdispatcher.conf");

    const Outcome outcome = collect({"getport", "4"}, {.limits = {{RLIMIT_DATA, 8U << 20U}}});

    EXPECT_EQ(outcome, success("4\n", cut("/rom/private/fpdispatcher.conf", 1U << 20U)));
}

}  // namespace
