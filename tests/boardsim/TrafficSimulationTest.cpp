// What a board reports under each traffic profile, asked of the model directly.

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MmiReply.hpp"
#include "NetfpState.hpp"
#include "QosStatistics.hpp"
#include "StateTree.hpp"
#include "TextFile.hpp"
#include "TrafficLog.hpp"
#include "TrafficSimulation.hpp"

using Boardsim::BoardState;
using Boardsim::Deployment;
using Boardsim::linesOf;
using Boardsim::LogLevel;
using Boardsim::LogLine;
using Boardsim::mmiReplyText;
using Boardsim::netfpProxyState;
using Boardsim::netfpServerState;
using Boardsim::QosStatistics;
using Boardsim::resourceManagerState;
using Boardsim::Scenario;
using Boardsim::StateTree;
using Boardsim::Traffic;
using Boardsim::TrafficLog;
using Boardsim::TrafficProfile;
using Boardsim::trafficProfiles;
using Boardsim::TrafficSimulation;

namespace {

using Lines = std::vector<std::string>;
using Values = std::map<std::string, std::uint64_t>;  // by "title / name"

constexpr std::array peersWithHeartbeats{"iwf_dispatcher", "sfn_dispatcher", "netfp_proxy"};

/// Values that rise and fall. All others only rise.
const std::set<std::string> gauges{
    "CPU / busy, per mille",
    "DMA service / channels in use",
    "heap statistics / blocks free",
    "heap statistics / blocks in use",
    "heap statistics / bytes free",
    "heap statistics / bytes in use",
    "heap statistics / descriptor pool free",
    "heap statistics / descriptor pool in use",
    "heap statistics / descriptor pool lowest",
    "heap statistics / largest free block",
    "heap statistics / shared blocks",
    "heap statistics / smallest free block",
    "reassembly counters / contexts in use",
    "resources: / descriptors in use",
    "resources: / queues free",
    "resources: / queues in use",
    "server: / fast-path channels",
    "server: / policies in",
    "server: / policies out",
    "server: / security associations",
    "server: / sessions",
    "socket service / last error number",
    "socket service / peers resolved",
    "socket service / peers unresolved",
    "socket service / receive queue length",
    "socket service / send queue length",
    "socket service / sockets in use",
};

/// Everything that the board reports, as text.
Lines reportsOf(const BoardState& board, const std::string& instance) {
    const auto* dispatcher = &board.dispatcher(instance);
    Lines texts{netfpProxyState(&board.system), netfpServerState(&board.system),
                resourceManagerState(&board.system), QosStatistics::text(instance, dispatcher)};
    for (const char* command : {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        texts.push_back(mmiReplyText(instance, command, dispatcher));
    }
    for (const auto& [name, text] : StateTree::texts(instance, dispatcher)) {
        texts.push_back(text);
    }
    return texts;
}

Values valuesOf(const BoardState& board, const std::string& instance) {
    constexpr std::size_t nameStart = 2;
    constexpr std::size_t valueStart = 38;
    Values values;
    for (const std::string& text : reportsOf(board, instance)) {
        const Lines lines = linesOf(text);
        const std::string prefix = instance + ": ";
        const std::string title = lines.front().substr(lines.front().starts_with(prefix) ? prefix.size() : 0);
        for (const std::string& line : std::vector(lines.begin() + 1, lines.end())) {
            const std::string name = line.substr(nameStart, valueStart - nameStart);
            values[title + " / " + name.substr(0, name.find_last_not_of(' ') + 1)] =
                std::stoull(line.substr(valueStart));
        }
    }
    return values;
}

/// All but the profile "none", because it has no simulation.
auto profilesWithTraffic() {
    return trafficProfiles().subspan(1);
}

BoardState boardAt(const Traffic& traffic, std::uint64_t second,
                   Deployment deployment = Deployment::sfnMaster) {
    TrafficSimulation simulation(traffic, deployment);
    simulation.advanceTo(second);
    return simulation.state();
}

/// Sums that hold at each moment: those of the first list equal those of the second.
struct Sum {
    Lines left;
    Lines right;
};

const std::vector<Sum> sums{
    {{"heap statistics / bytes in use", "heap statistics / bytes free"}, {"heap statistics / bytes in all"}},
    {{"heap statistics / allocations"}, {"heap statistics / releases", "heap statistics / blocks in use"}},
    {{"CPU / busy loops", "CPU / idle loops"}, {"CPU / loops"}},
    {{"CPU / loops"},
     {"socket service counters / polls with data", "socket service counters / polls without data"}},
    {{"DMA service / transfers started"},
     {"DMA service / transfers completed", "DMA service / transfers failed",
      "DMA service / channels in use"}},
    {{"reassembly counters / contexts opened"},
     {"reassembly counters / contexts completed", "reassembly counters / contexts timed out",
      "reassembly counters / contexts in use"}},
    {{"reassembly counters / first fragments"},
     {"reassembly counters / contexts opened", "reassembly counters / no context left"}},
    {{"reassembly counters / fragments received"},
     {"reassembly counters / first fragments", "reassembly counters / last fragments",
      "reassembly counters / overlapping fragments", "reassembly counters / duplicate fragments",
      "reassembly counters / fragments out of window"}},
    {{"reassembly counters / fragments received"}, {"socket service counters / fragments passed on"}},
    {{"socket service counters / datagrams received", "reassembly counters / contexts completed"},
     {"socket service counters / fragments passed on", "socket service counters / too long, dropped",
      "socket service counters / too short, dropped", "socket service counters / unknown peer, dropped",
      "socket service counters / no buffer, dropped", "socket service counters / checksum errors",
      "QoS / class 0, frames", "QoS / class 1, frames", "QoS / class 2, frames"}},
    {{"QoS / class 0, frames", "QoS / class 1, frames", "QoS / class 2, frames"},
     {"QoS / class 0, dropped", "QoS / class 1, dropped", "QoS / class 2, dropped",
      "socket service / send queue length", "socket service counters / datagrams sent",
      "socket service counters / send errors"}},
    {{"server: / policies in"}, {"server: / policies out"}},
};
const std::vector<Sum> sumsOfIwf{
    {{"bridge / frames in"}, {"bridge / frames out", "bridge / frames dropped"}},
};

/// Each pair: the first value is never greater than the second.
const std::vector<std::pair<std::string, std::string>> orders{
    {"heap statistics / bytes in use", "heap statistics / bytes in use, highest"},
    {"heap statistics / bytes in use, highest", "heap statistics / bytes in all"},
    {"heap statistics / smallest free block", "heap statistics / largest free block"},
    {"heap statistics / largest free block", "heap statistics / bytes free"},
    {"heap statistics / shared blocks", "heap statistics / blocks in use"},
    {"heap statistics / descriptor pool lowest", "heap statistics / descriptor pool free"},
    {"heap statistics / descriptor pool in use", "resources: / descriptors in use"},
    {"CPU / busy, per mille", "CPU / busy, per mille, highest"},
    {"DMA service / time-outs", "DMA service / transfers failed"},
    {"DMA service / channels in use", "DMA service / channels"},
    {"reassembly counters / contexts in use", "reassembly counters / contexts in use, highest"},
    {"socket service / sockets in use", "socket service / sockets open"},
    {"QoS / class 0, dropped", "QoS / class 0, frames"},
    {"QoS / class 1, dropped", "QoS / class 1, frames"},
    {"QoS / class 2, dropped", "QoS / class 2, frames"},
    {"proxy: / interfaces added", "proxy: / interfaces offered"},
};
const std::vector<std::pair<std::string, std::string>> ordersOfIwf{
    {"bridge / frames flooded", "bridge / frames out"},
    {"bridge / addresses aged out", "bridge / addresses learnt"},
};

std::uint64_t total(const Values& values, const Lines& names) {
    std::uint64_t sum = 0;
    for (const std::string& name : names) {
        sum += values.at(name);
    }
    return sum;
}

void expectConsistent(const Values& values, const std::vector<Sum>& equalSums,
                      const std::vector<std::pair<std::string, std::string>>& ordered) {
    for (const Sum& sum : equalSums) {
        EXPECT_EQ(total(values, sum.left), total(values, sum.right)) << testing::PrintToString(sum.left);
    }
    for (const auto& [less, more] : ordered) {
        EXPECT_LE(values.at(less), values.at(more)) << less;
    }
    EXPECT_EQ(
        total(values, {"heap statistics / descriptor pool free", "heap statistics / descriptor pool in use"}),
        8192U);
    EXPECT_EQ(total(values, {"resources: / queues free", "resources: / queues in use"}), 64U);
    EXPECT_EQ(total(values, {"socket service / peers resolved", "socket service / peers unresolved"}), 48U);
}

/// The names of the values that fell, except gauges.
Lines fallen(const Values& before, const Values& after) {
    Lines names;
    for (const auto& [name, value] : before) {
        if (after.at(name) < value && !gauges.contains(name)) {
            names.push_back(name);
        }
    }
    return names;
}

/// A number of the board in each second from 0 to `last`.
template <typename Number>
std::vector<std::uint64_t> course(const Traffic& traffic, std::uint64_t last, Number number) {
    TrafficSimulation simulation(traffic, Deployment::sfnMaster);
    std::vector<std::uint64_t> numbers;
    for (std::uint64_t second = 0; second <= last; ++second) {
        simulation.advanceTo(second);
        numbers.push_back(number(simulation.state()));
    }
    return numbers;
}

/// The first second in which the number is not 0.
auto firstSecond(const std::vector<std::uint64_t>& numbers) {
    return std::ranges::find_if(numbers, [](auto number) { return number != 0; }) - numbers.begin();
}

/// The values with a word for trouble that are not 0.
Lines troubles(const Values& values) {
    constexpr std::array words{"dropped",    "error",         "failed",  "timed out",     "time-out",
                               "no context", "refused",       "full",    "late",          "block on send",
                               "duplicate",  "out of window", "overlap", "peers unresolv"};
    Lines names;
    for (const auto& each : values) {
        const auto isInName = [&](const char* word) { return each.first.find(word) != std::string::npos; };
        if (each.second != 0 && std::ranges::any_of(words, isInName)) {
            names.push_back(each.first);
        }
    }
    return names;
}

/// The entries of a process up to this second, as "LEVEL TEXT", without those of level debug.
Lines entriesOf(const Traffic& traffic, const char* process, std::uint64_t second) {
    Scenario scenario;
    scenario.traffic = traffic;
    Lines entries;
    for (const LogLine& line : TrafficLog(scenario, process).linesUpTo(second)) {
        if (line.level != LogLevel::debug) {
            entries.push_back(std::to_string(static_cast<int>(line.level)) + " " + line.text);
        }
    }
    return entries;
}

}  // namespace

TEST(TrafficSimulationTest, DependsOnlyOnProfileSeedDeploymentAndSecond) {
    const Traffic traffic{.profile = TrafficProfile::busy, .seed = 7};
    TrafficSimulation stepwise(traffic, Deployment::sfnMaster);
    for (std::uint64_t second = 1; second <= 90; second += 7) {
        stepwise.advanceTo(second);
        EXPECT_EQ(reportsOf(stepwise.state(), "iwf"), reportsOf(boardAt(traffic, second), "iwf"));
    }

    const Lines reports = reportsOf(boardAt(traffic, 60), "iwf");
    EXPECT_NE(reports, reportsOf(boardAt({.profile = TrafficProfile::busy, .seed = 8}, 60), "iwf"));
    EXPECT_NE(reports, reportsOf(boardAt({.profile = TrafficProfile::steady, .seed = 7}, 60), "iwf"));
    EXPECT_NE(reports, reportsOf(boardAt(traffic, 60, Deployment::iwf), "iwf"));
    EXPECT_NE(reports, reportsOf(boardAt(traffic, 61), "iwf"));
}

TEST(TrafficSimulationTest, ReportsNumbersThatFitTogetherAndCountersThatNeverFall) {
    constexpr std::uint64_t lastSecond = 80;
    for (const auto& profile : profilesWithTraffic()) {
        TrafficSimulation simulation({.profile = profile.profile}, Deployment::sfnMaster);
        std::map<std::string, Values> before;
        for (std::uint64_t second = 0; second <= lastSecond; ++second) {
            simulation.advanceTo(second);
            const std::string instance = second % 4 == 0 ? "sfn" : "iwf";
            SCOPED_TRACE(std::string(profile.name) + ", " + instance + ", second " + std::to_string(second));
            const Values values = valuesOf(simulation.state(), instance);
            expectConsistent(values, sums, orders);
            if (instance == "iwf") {
                expectConsistent(values, sumsOfIwf, ordersOfIwf);
            }
            EXPECT_EQ(fallen(before[instance], values), Lines{});
            before[instance] = values;
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

TEST(TrafficSimulationTest, AddsUpTheDescriptorsOfTheDispatchersThatRun) {
    const Traffic traffic{.profile = TrafficProfile::steady};
    const struct {
        Deployment deployment;
        std::uint64_t iwf;
        std::uint64_t sfn;
    } cases[] = {{Deployment::iwf, 1, 0}, {Deployment::sfnMaster, 1, 1}, {Deployment::sfnAntenna, 0, 1}};

    for (const auto& [deployment, iwf, sfn] : cases) {
        const BoardState board = boardAt(traffic, 20, deployment);
        EXPECT_EQ(board.system.descriptorsInUse, iwf * board.iwf.pool.inUse + sfn * board.sfn.pool.inUse);
        EXPECT_EQ(board.system.clients, 2 + iwf + sfn);
    }
}

TEST(TrafficSimulationTest, HasNoTroubleUnderSteadyTraffic) {
    for (const std::uint64_t second : {10U, 60U, 1000U}) {
        const BoardState board = boardAt({.profile = TrafficProfile::steady}, second);
        EXPECT_EQ(troubles(valuesOf(board, "iwf")), Lines{});
        EXPECT_EQ(troubles(valuesOf(board, "sfn")), Lines{});
    }
    EXPECT_THAT(entriesOf({.profile = TrafficProfile::steady}, "iwf_dispatcher", 100),
                testing::Each(testing::StartsWith("2 ")));
}

TEST(TrafficSimulationTest, FillsAndDrainsTheQueueUnderBusyTraffic) {
    for (const std::uint64_t seed : {1U, 2U, 3U}) {
        const auto queue = course({.profile = TrafficProfile::busy, .seed = seed}, 29,
                                  [](const BoardState& board) { return board.iwf.sockets.queued; });
        EXPECT_EQ(*std::ranges::max_element(queue), 512U);
        EXPECT_EQ(queue.front(), 0U);
        EXPECT_EQ(queue.back(), 0U);
    }
}

TEST(TrafficSimulationTest, RunsOutOfMemoryAndDescriptorsUnderALeak) {
    for (const std::uint64_t seed : {1U, 2U, 3U, 4U, 5U}) {
        const Traffic traffic{.profile = TrafficProfile::leak, .seed = seed};
        const auto failed =
            course(traffic, 80, [](const BoardState& board) { return board.iwf.heap.failed; });
        const auto dropped =
            course(traffic, 80, [](const BoardState& board) { return board.sfn.sockets.noBuffer; });
        EXPECT_THAT(firstSecond(failed), testing::AllOf(testing::Ge(65), testing::Le(75)));
        EXPECT_THAT(firstSecond(dropped), testing::AllOf(testing::Ge(65), testing::Le(75)));
    }
}

TEST(TrafficSimulationTest, DropsTheDatagramsOfStrangersInAFlood) {
    const Traffic traffic{.profile = TrafficProfile::flood};
    const auto dropped =
        course(traffic, 70, [](const BoardState& board) { return board.iwf.sockets.unknownPeer; });
    const auto framesDropped =
        course(traffic, 10, [](const BoardState& board) { return board.iwf.qos[2].dropped; });

    EXPECT_EQ(dropped[4], 0U);
    EXPECT_GT(dropped[5], 5000U);
    EXPECT_GT(dropped[44], dropped[43]);
    EXPECT_EQ(dropped[64], dropped[44]);
    EXPECT_GT(dropped[65], dropped[64]);
    EXPECT_GT(framesDropped[10], 0U);
}

TEST(TrafficSimulationTest, MakesOnePeerUnhealthyInEachHalfMinuteWhenFlapping) {
    std::set<std::string> unhealthy;
    TrafficSimulation simulation({.profile = TrafficProfile::flapping}, Deployment::sfnMaster);
    for (std::uint64_t second = 0; second < 300;) {
        std::map<std::string, int> secondsOf;
        for (const std::uint64_t end = second + 30; second < end; ++second) {
            simulation.advanceTo(second);
            for (const char* peer : peersWithHeartbeats) {
                secondsOf[peer] += simulation.state().heartbeatOf(peer) == 2 ? 1 : 0;
            }
        }
        std::erase_if(secondsOf, [](const auto& each) { return each.second == 0; });
        ASSERT_EQ(secondsOf.size(), 1U);
        EXPECT_THAT(secondsOf.begin()->second, testing::AllOf(testing::Ge(6), testing::Le(10)));
        unhealthy.insert(secondsOf.begin()->first);
    }
    EXPECT_EQ(unhealthy.size(), 3U);
}

TEST(TrafficSimulationTest, MakesOnlyPeersUnhealthyThatRun) {
    TrafficSimulation simulation({.profile = TrafficProfile::flapping}, Deployment::sfnAntenna);
    for (std::uint64_t second = 0; second < 600; ++second) {
        simulation.advanceTo(second);
        EXPECT_EQ(simulation.state().heartbeatOf("iwf_dispatcher"), 0U);
    }
}

TEST(TrafficSimulationTest, KeepsAllPeersHealthyUnderOtherProfiles) {
    for (const auto& profile : profilesWithTraffic()) {
        if (profile.profile != TrafficProfile::flapping) {
            TrafficSimulation simulation({.profile = profile.profile}, Deployment::sfnMaster);
            for (std::uint64_t second = 0; second < 120; ++second) {
                simulation.advanceTo(second);
                for (const char* peer : peersWithHeartbeats) {
                    EXPECT_EQ(simulation.state().heartbeatOf(peer), 0U) << profile.name;
                }
            }
        }
    }
}

TEST(TrafficLogTest, WarnsOfALeakAndThenReportsErrors) {
    Lines entries = entriesOf({.profile = TrafficProfile::leak}, "iwf_dispatcher", 71);
    std::erase_if(entries, [](const std::string& entry) { return entry.starts_with("2 "); });

    EXPECT_EQ(
        entries,
        (Lines{"1 heap 75 % in use: 12748800 of 16777216 bytes", "1 descriptor pool low: 2028 of 8192 free",
               "1 heap 90 % in use: 15130624 of 16777216 bytes", "1 descriptor pool low: 797 of 8192 free",
               "0 out of memory: 165 allocations failed, 7168 bytes free",
               "0 out of memory: 224 allocations failed, 11264 bytes free",
               "0 out of memory: 162 allocations failed, 10240 bytes free",
               "0 out of memory: 157 allocations failed, 7168 bytes free"}));
}

TEST(TrafficLogTest, ReportsBeginAndEndOfAFlap) {
    EXPECT_EQ(
        entriesOf({.profile = TrafficProfile::flapping, .seed = 3}, "iwf_dispatcher", 29),
        (Lines{"2 heap 26 % in use, 7263 descriptors free", "1 unhealthy: the event loop has stalled",
               "1 send queue filling: 512 of 512", "1 send queue full: frames are dropped",
               "0 DMA: 6 transfers timed out", "0 DMA: 4 transfers timed out", "0 DMA: 7 transfers timed out",
               "0 DMA: 7 transfers timed out", "0 DMA: 7 transfers timed out",
               "2 heap 29 % in use, 6777 descriptors free", "0 DMA: 5 transfers timed out",
               "0 DMA: 8 transfers timed out", "0 DMA: 8 transfers timed out", "0 DMA: 6 transfers timed out",
               "2 send queue no longer full: 8370 frames dropped since the start",
               "2 healthy again after 9 s"}));
    EXPECT_EQ(entriesOf({.profile = TrafficProfile::flapping, .seed = 5}, "netfp_server", 29),
              (Lines{"2 12 routes, 20 neighbours", "1 netfp_proxy is unhealthy",
                     "0 commands refused: 2, no answer from netfp_proxy",
                     "0 commands refused: 1, no answer from netfp_proxy",
                     "0 commands refused: 2, no answer from netfp_proxy", "2 12 routes, 21 neighbours",
                     "0 commands refused: 1, no answer from netfp_proxy",
                     "0 commands refused: 3, no answer from netfp_proxy",
                     "0 commands refused: 2, no answer from netfp_proxy",
                     "2 netfp_proxy is healthy again after 6 s"}));
}

TEST(TrafficLogTest, HasEntriesByTheThousandInAFlood) {
    const Traffic traffic{.profile = TrafficProfile::flood};
    for (const char* process : {"iwf_dispatcher", "sfn_dispatcher", "netfp_server"}) {
        EXPECT_EQ(entriesOf(traffic, process, 4), Lines{});
        const Lines entries = entriesOf(traffic, process, 5);
        EXPECT_EQ(entries.size(), 4001U);
        EXPECT_THAT(entries, testing::Each(testing::StartsWith("1 ")));
    }
}

TEST(TrafficLogTest, LeavesOutWhatHappenedLongAgo) {
    const Traffic traffic{.profile = TrafficProfile::flood};
    const auto datagrams = [&](std::uint64_t second) {
        const Lines entries = entriesOf(traffic, "iwf_dispatcher", second);
        return std::ranges::count_if(entries,
                                     [](const std::string& each) { return each.starts_with("1 dropped"); });
    };

    EXPECT_EQ(datagrams(40), 3 * 4000);
    const Lines entries = entriesOf(traffic, "iwf_dispatcher", 800);
    EXPECT_EQ(
        std::ranges::count_if(entries, [](const std::string& each) { return each.starts_with("2 heap"); }),
        120 / 10);
}

TEST(TrafficLogTest, IsTheSameHoweverOftenItIsAsked) {
    Scenario scenario;
    scenario.traffic = {.profile = TrafficProfile::busy};
    TrafficLog once(scenario, "sfn_dispatcher");
    TrafficLog often(scenario, "sfn_dispatcher");
    Lines atOnce;
    Lines inSteps;

    for (const LogLine& line : once.linesUpTo(60)) {
        atOnce.push_back(line.text);
    }
    for (std::uint64_t second = 0; second <= 60; second += 3) {
        for (const LogLine& line : often.linesUpTo(second)) {
            inSteps.push_back(line.text);
        }
    }

    EXPECT_EQ(atOnce, inSteps);
}
