// The outputs of the supervision, and its behaviour without them.

#include <csignal>
#include <filesystem>

#include "Injection.hpp"
#include "SupervisionFixture.hpp"
#include "SystemLog.hpp"

using Boardsim::Scenario;

namespace {

class SupervisionLogTest : public SupervisionFixture {
protected:
    /// A board on which the first cycle is the last.
    void startBoardOfOneCycle(const Scenario& scenario = {}) {
        startBoard(scenario);
        setStatus("netfp_proxy", 3);
    }

    static constexpr const char* proxyIsIll =
        "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR";
};

}  // namespace

TEST_F(SupervisionLogTest, PrintsOnlyTheOwnerOfTheKeywordInVerboseMode) {
    startBoardOfOneCycle();

    EXPECT_EQ(supervise({"-v"}), (Outcome{1,
                                          "Verbose mode enabled.\n"
                                          "\n"  // from the record that the board isolates its cores
                                          "Looking up Action keyword \"supervision\"\n"
                                          "Detected Supervision keywords.\n",
                                          std::string(proxyIsIll) + "\n"}));

    expectInSharedMemory({started("IWF SFN"), error(proxyIsIll)});
    EXPECT_EQ(systemLog(), (Words{"<14>korvel: Detected L2 SCT environment in isolcpus",
                                  started("IWF SFN").inSystemLog, error(proxyIsIll).inSystemLog}));
}

TEST_F(SupervisionLogTest, RunsWithoutASystemLog) {
    startBoardOfOneCycle({.without = {"system_log"}});

    EXPECT_EQ(supervise(), endedWith(proxyIsIll));

    expectInSharedMemory({started("IWF SFN"), error(proxyIsIll)});
}

TEST_F(SupervisionLogTest, ContinuesIfTheSystemLogStoppedReading) {
    startBoardOfOneCycle({.without = {"system_log"}});
    SystemLog stuck;
    stuck.fill();

    EXPECT_EQ(supervise(), endedWith(proxyIsIll));

    expectInSharedMemory({started("IWF SFN"), error(proxyIsIll)});
    EXPECT_EQ(stuck.records(), Words{});
}

TEST_F(SupervisionLogTest, LogsTheLastStatusThoughNobodyReadsStandardError) {
    startBoardOfOneCycle();

    // The pipe's reader ends before the supervision starts.
    run({"sh", "-c", "{ sleep 0.5; korvel supervision 2>&1; } | true"});

    expectLogged({started("IWF SFN"), error(proxyIsIll)});
}

TEST_F(SupervisionLogTest, WritesToASharedMemoryLogThatIsFull) {
    startBoardOfOneCycle({.fullLogs = true});

    EXPECT_EQ(supervise(), endedWith(proxyIsIll));

    expectLogged({started("IWF SFN"), error(proxyIsIll)});
}

TEST_F(SupervisionLogTest, AbortsWithoutASharedMemoryLog) {
    std::filesystem::create_directories("/dev/shm/dispatcher_log_memory");
    startBoardOfOneCycle();

    EXPECT_EQ(supervise(),
              (Outcome{128 + SIGABRT, "", "SupervisionMgr: Assertion \"nullptr != logClient\" failed.\n"}));

    EXPECT_EQ(systemLog(), Words{});
    EXPECT_EQ(requestsTo("netfp_proxy"), Words{});
}

TEST_F(SupervisionLogTest, ReportsAMissingSocketOnlyInTheLogs) {
    startBoard();

    EXPECT_EQ(runInjected({.faults = {"bind:error=EADDRINUSE"}}, {"korvel", "supervision"}), endedSilently());

    expectLogged({error("Error while binding netlink socket, errno: Address already in use")});
    EXPECT_EQ(requestsTo("netfp_proxy"), Words{});
}
