// The peers of a board with traffic report what the model computes for the same second.

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Board.hpp"
#include "DatagramClient.hpp"
#include "HeartbeatStatus.hpp"
#include "LiveTraffic.hpp"
#include "LogEntries.hpp"
#include "MmiReply.hpp"
#include "NetfpState.hpp"
#include "QosStatistics.hpp"
#include "StateTree.hpp"
#include "TestFiles.hpp"
#include "TextFile.hpp"
#include "TrafficLog.hpp"

using Boardsim::Board;
using Boardsim::BoardState;
using Boardsim::HeartbeatStatus;
using Boardsim::linesOf;
using Boardsim::LiveTraffic;
using Boardsim::LogLine;
using Boardsim::mmiEndOfMessage;
using Boardsim::mmiReplyText;
using Boardsim::netfpProxyState;
using Boardsim::netfpServerState;
using Boardsim::QosStatistics;
using Boardsim::readTextFile;
using Boardsim::resourceManagerState;
using Boardsim::Scenario;
using Boardsim::StateTree;
using Boardsim::TrafficClock;
using Boardsim::TrafficLog;
using Boardsim::TrafficProfile;
using Boardsim::TrafficSimulation;
using Boardsim::writeTextFile;

namespace {

using Lines = std::vector<std::string>;

Scenario scenarioOf(TrafficProfile profile, int headStart) {
    Scenario scenario;
    scenario.traffic = {.profile = profile, .headStart = headStart, .seed = 7};
    return scenario;
}

BoardState expectedAt(const Scenario& scenario, std::uint64_t second) {
    TrafficSimulation simulation(scenario.traffic, scenario.deployment);
    simulation.advanceTo(second);
    return simulation.state();
}

std::string replyTo(const std::string& command, std::uint16_t port) {
    const auto client = DatagramClient::ofPort(port);
    client.send(command);
    std::string reply;
    for (std::string datagram; datagram != mmiEndOfMessage; datagram = client.receive().value()) {
        reply += datagram;
    }
    return reply;
}

std::string dumpOf(const Board& board, const std::string& process) {
    const std::string file = "/tmp/" + process + ".log";
    std::filesystem::remove(file);
    ::kill(board.pid(process), SIGUSR1);
    std::string dump;
    while (!dump.ends_with("</" + process + "_dump>\n")) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        dump = std::filesystem::exists(file) ? readTextFile(file) : "";
    }
    return dump;
}

/// Asks until the report is the expected one for the present second, from second `first` on.
void expectReport(const std::function<std::string()>& ask,
                  const std::function<std::string(std::uint64_t second)>& expected, std::uint64_t first = 0) {
    constexpr std::uint64_t patience = 30;
    const TrafficClock clock;
    const std::uint64_t end = clock.second() + patience;
    std::uint64_t second = clock.second();
    for (std::string report; second < first || report != expected(second); report = ask()) {
        ASSERT_LT(second, end) << report << "instead of\n" << expected(second);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        second = clock.second();
    }
}

}  // namespace

TEST(TrafficBoardTest, AnswersCommandsWithTheCountersOfTheSecond) {
    const Scenario scenario = scenarioOf(TrafficProfile::leak, 80);
    const Board board(scenario);
    const auto expectReply = [&](const char* command, const char* instance, std::uint16_t port) {
        expectReport([&] { return replyTo(command, port); },
                     [&](std::uint64_t second) {
                         const BoardState state = expectedAt(scenario, second);
                         return mmiReplyText(instance, command, &state.dispatcher(instance));
                     });
    };

    for (const char* command : {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        expectReply(command, "iwf", 7777);
    }
    expectReply("HeapStats", "sfn", 8777);
}

TEST(TrafficBoardTest, KeepsItsStateFilesUpToDate) {
    const Scenario scenario = scenarioOf(TrafficProfile::busy, 0);
    const Board board(scenario);

    for (const std::string instance : {"iwf", "sfn"}) {
        const std::string folder = "/tmp/fuse/" + instance + "/";
        const auto expectFile = [&](const std::string& file, const auto& textOf) {
            expectReport([path = folder + file] { return readTextFile(path); },
                         [&](std::uint64_t second) {
                             const BoardState state = expectedAt(scenario, second);
                             return textOf(&state.dispatcher(instance));
                         },
                         1);
        };
        for (const char* name : {"dispatcherCpu", "dmaStats"}) {
            expectFile(name, [&](const auto* state) { return StateTree::texts(instance, state).at(name); });
        }
        expectFile("qosStats", [&](const auto* state) { return QosStatistics::text(instance, state); });
    }
    EXPECT_EQ(filesBelow("/tmp/fuse"), (Lines{"iwf/dispatcherCpu", "iwf/dmaStats", "iwf/fpBridgeStats",
                                              "iwf/qosStats", "iwf/tracing_on", "sfn/dispatcherCpu",
                                              "sfn/dmaStats", "sfn/qosStats", "sfn/tracing_on"}));
}

TEST(TrafficBoardTest, DumpsTheCountersOfTheSecond) {
    const Scenario scenario = scenarioOf(TrafficProfile::leak, 80);
    const Board board(scenario);
    const auto expectDump = [&](const std::string& process, auto* textOf) {
        const std::string opening = "<" + process + "_dump>\n";
        const std::string terminator = "</" + process + "_dump>\n";
        expectReport([&] { return dumpOf(board, process); },
                     [&](std::uint64_t second) {
                         const BoardState state = expectedAt(scenario, second);
                         return opening + textOf(&state.system) + terminator;
                     });
    };

    expectDump("netfp_proxy", netfpProxyState);
    expectDump("netfp_server", netfpServerState);
    expectDump("resmgr_server", resourceManagerState);
}

TEST(TrafficBoardTest, CountsClassesFromZeroAfterAReset) {
    const Board board(scenarioOf(TrafficProfile::steady, 100));
    const auto framesOfClass0 = [] {
        constexpr std::size_t valueStart = 38;
        return std::stoull(linesOf(readTextFile("/tmp/fuse/iwf/qosStats")).at(1).substr(valueStart));
    };
    EXPECT_GT(framesOfClass0(), 10'000U);

    EXPECT_EQ(replyTo("resetqosstats", 7777), "iwf: QoS statistics cleared");

    const auto afterReset = framesOfClass0();
    EXPECT_LT(afterReset, 1000U);
    while (framesOfClass0() == afterReset) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_GT(framesOfClass0(), afterReset);
}

TEST(TrafficBoardTest, WritesTheEntriesBeforeTheBoardsStartAtOnce) {
    const Scenario scenario = scenarioOf(TrafficProfile::leak, 70);
    const Board board(scenario);

    const auto expectEntries = [&](const std::string& process, const char* log) {
        const auto entry = [&](int level, const std::string& text) {
            return std::to_string(level).append(" ").append(process).append(": ").append(text);
        };
        Lines expected{entry(3, "started")};
        for (const LogLine& line : TrafficLog(scenario, process).linesUpTo(70)) {
            expected.push_back(entry(static_cast<int>(line.level), line.text));
        }
        Lines entries = logEntries(log);
        std::erase_if(entries, [&](const std::string& each) { return !each.substr(2).starts_with(process); });
        ASSERT_GE(entries.size(), expected.size());
        entries.resize(expected.size());
        EXPECT_EQ(entries, expected);
    };

    expectEntries("iwf_dispatcher", "dispatcher_log_memory");
    expectEntries("sfn_dispatcher", "dispatcher_log_memory");
    expectEntries("netfp_server", "syslib_log_memory");
}

TEST(TrafficBoardTest, CarriesTheStatusOfTheProfileInHeartbeatsUnlessItsFileHasAnother) {
    const char* file = "/run/boardsim/heartbeat/netfp_proxy";
    Scenario scenario = scenarioOf(TrafficProfile::flapping, 0);
    int& second = scenario.traffic.headStart;
    while (expectedAt(scenario, static_cast<std::uint64_t>(second)).heartbeatOf("netfp_proxy") == 0) {
        ++second;
    }
    ++second;  // far from the next second that is healthy
    writeTextFile("/run/boardsim/traffic_start", TrafficClock::startText(scenario.traffic));
    const HeartbeatStatus status("netfp_proxy", std::make_shared<LiveTraffic>(scenario));

    EXPECT_EQ(status.value(), 2U);
    writeTextFile(file, "5\n");
    EXPECT_EQ(status.value(), 5U);
}
