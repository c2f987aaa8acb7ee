#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "PeerFaults.hpp"
#include "ServerSocket.hpp"
#include "SmLog.hpp"
#include "TextFile.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;
using Boardsim::Deployment;
using Boardsim::parsePeerFault;
using Boardsim::readTextFile;
using Boardsim::Scenario;
using Boardsim::ServerSocket;
using Boardsim::writeTextFile;

namespace {

/// The names of the regular files below a directory, in order.
std::vector<std::string> filesIn(const std::string& directory) {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        if (entry.is_regular_file()) {
            names.push_back(entry.path().lexically_relative(directory));
        }
    }
    std::ranges::sort(names);
    return names;
}

std::string commOf(pid_t process) {
    return readTextFile("/proc/" + std::to_string(process) + "/comm");
}

constexpr std::size_t logCapacity = std::size_t{2} << 20;

/// The whole text of a shared-memory log.
std::string textOfLog(const char* name) {
    std::string text(logCapacity, '\0');
    SmLog::getClientInstance(name, 3)->read(text.data(), static_cast<unsigned>(text.size()), 3, 0, 0);
    text.resize(text.find('\0'));
    return text;
}

}  // namespace

TEST(BoardTest, RunsEachPeerUnderItsOwnName) {
    const Board board({});

    for (const char* peer : {"system_log", "netfp_master", "netfp_proxy", "netfp_server", "resmgr_server",
                             "iwf_dispatcher", "sfn_dispatcher"}) {
        SCOPED_TRACE(peer);
        EXPECT_EQ(commOf(board.pid(peer)), std::string(peer) + "\n");
        EXPECT_EQ(readTextFile("/proc/" + std::to_string(board.pid(peer)) + "/cmdline"),
                  std::string(peer) + '\0');
    }
}

TEST(BoardTest, RunsTheDispatchersOfItsDeployment) {
    const struct {
        Deployment deployment;
        std::vector<std::string> marks;
        std::vector<std::string> state;
    } cases[] = {
        {Deployment::iwf,
         {"config/deployment_type"},
         {"iwf/dispatcherCpu", "iwf/dmaStats", "iwf/fpBridgeStats", "iwf/qosStats", "iwf/tracing_on"}},
        {Deployment::sfnAntenna,
         {"private/is_ant"},
         {"sfn/dispatcherCpu", "sfn/dmaStats", "sfn/qosStats", "sfn/tracing_on"}},
        {Deployment::sfnMaster,
         {"private/is_master"},
         {"iwf/dispatcherCpu", "iwf/dmaStats", "iwf/fpBridgeStats", "iwf/qosStats", "iwf/tracing_on",
          "sfn/dispatcherCpu", "sfn/dmaStats", "sfn/qosStats", "sfn/tracing_on"}},
    };
    for (const auto& [deployment, marks, state] : cases) {
        Scenario scenario;
        scenario.deployment = deployment;
        const Board board(scenario);
        EXPECT_EQ(filesIn("/rom"), marks);
        EXPECT_EQ(filesIn("/tmp/fuse"), state);
    }
}

TEST(BoardTest, DoesNotStartExcludedPeers) {
    Scenario scenario;
    scenario.without = {"netfp_master", "sfn_dispatcher"};

    const Board board(scenario);

    EXPECT_THROW(board.pid("netfp_master"), std::out_of_range);
    EXPECT_THROW(board.pid("sfn_dispatcher"), std::out_of_range);
    EXPECT_FALSE(fs::exists("/tmp/NetfpMaster"));
    EXPECT_FALSE(fs::exists("/tmp/fuse/sfn"));
}

TEST(BoardTest, CreatesSettingsAndRemovesThem) {
    writeTextFile("/tmp/my.conf", "key=value\n");
    Scenario scenario;
    scenario.secured = true;
    scenario.secureError = -2;
    scenario.cmaError = 3;
    scenario.config = "/tmp/my.conf";
    {
        const Board board(scenario);
        EXPECT_EQ(readTextFile("/run/boardsim/secure"), "1\n");
        EXPECT_EQ(readTextFile("/run/boardsim/secure_error"), "-2\n");
        EXPECT_EQ(readTextFile("/run/boardsim/cma_error"), "3\n");
        EXPECT_EQ(readTextFile("/rom/private/fpdispatcher.conf"), "key=value\n");
    }

    const Board plain({});

    EXPECT_FALSE(fs::exists("/run/boardsim/secure"));
    EXPECT_FALSE(fs::exists("/run/boardsim/secure_error"));
    EXPECT_FALSE(fs::exists("/run/boardsim/cma_error"));
    EXPECT_FALSE(fs::exists("/rom/private/fpdispatcher.conf"));
}

TEST(BoardTest, AnswersOnTheBoardsSocketsOnceItIsConstructed) {
    const Board board({});

    EXPECT_TRUE(DatagramClient::ofPath("/tmp/NetfpMaster", "/tmp/client").send("x"));
    for (const std::uint16_t port : std::array<std::uint16_t, 2>{7777, 8777}) {
        const auto client = DatagramClient::ofPort(port);
        client.send("x");
        EXPECT_EQ(client.receive(), "Unknown command: x\n");
    }
}

TEST(BoardTest, HasProcessesThatWriteToTheSharedMemoryLogs) {
    const Board board({});

    EXPECT_THAT(textOfLog("syslib_log_memory"), testing::HasSubstr("netfp_server"));
    EXPECT_THAT(textOfLog("dispatcher_log_memory"),
                testing::AllOf(testing::HasSubstr("iwf_dispatcher"), testing::HasSubstr("sfn_dispatcher")));
}

TEST(BoardTest, FillsBothLogsWhenAsked) {
    Scenario scenario;
    scenario.fullLogs = true;

    const Board board(scenario);

    constexpr std::size_t longestEntry = 4096;
    EXPECT_GT(textOfLog("syslib_log_memory").size(), logCapacity - longestEntry);
    EXPECT_GT(textOfLog("dispatcher_log_memory").size(), logCapacity - longestEntry);
}

TEST(BoardTest, GivesPeersTheirFaults) {
    Scenario scenario;
    scenario.faults = {parsePeerFault("netfp_master=dying")};
    const Board board(scenario);
    const auto client = DatagramClient::ofPath("/tmp/NetfpMaster", "/tmp/client");

    client.send("x");

    siginfo_t end{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(board.pid("netfp_master")), &end, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(client.send("x"));
    EXPECT_EQ(errno, ECONNREFUSED);  // as after a crash, the socket's file still exists
    EXPECT_EQ(Board::received("netfp_master"), std::vector<std::string>{"78"});
}

TEST(BoardTest, DumpsTheMastersTableAtASignal) {
    const Board board({});

    ::kill(board.pid("netfp_master"), SIGUSR1);

    std::string dump;
    while (!dump.ends_with("</netfp_master_dump>\n")) {
        dump = fs::exists("/tmp/netfp_master.log") ? readTextFile("/tmp/netfp_master.log") : "";
    }
    EXPECT_EQ(dump,
              "<netfp_master_dump>\ninterfaces:\n  eth0 port 1\n  eth1 port 2\n  eth2 port 3\n  eth3 port 4\n"
              "mirroring:\n</netfp_master_dump>\n");
    EXPECT_EQ(Board::received("netfp_master"), std::vector<std::string>{"SIGUSR1"});
}

TEST(BoardTest, EndsOnlyItsOwnPeers) {
    const pid_t other = ::fork();
    if (other == 0) {
        ::pause();
        ::_exit(0);
    }
    pid_t master = 0;
    {
        const Board board({});
        master = board.pid("netfp_master");
    }

    EXPECT_EQ(::kill(master, 0), -1);
    EXPECT_EQ(errno, ESRCH);
    EXPECT_EQ(::waitpid(other, nullptr, WNOHANG), 0);
    ::kill(other, SIGKILL);
    ::waitpid(other, nullptr, 0);
}

TEST(BoardTest, StartsWithoutTheRecordsOfAnEarlierBoard) {
    {
        const Board board({});
        const auto client = DatagramClient::ofPort(7777);
        client.send("x");
        ASSERT_TRUE(client.receive());
        ASSERT_EQ(Board::received("iwf_dispatcher").size(), 1U);
    }

    const Board board({});

    EXPECT_EQ(Board::received("iwf_dispatcher").size(), 0U);
}

TEST(BoardTest, NamesAPeerThatDoesNotStart) {
    const auto occupied = ServerSocket::atLocalPort(8777);

    try {
        const Board board({});
        FAIL() << "the board started";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "sfn_dispatcher did not start");
    }
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a peer is left over";
}
