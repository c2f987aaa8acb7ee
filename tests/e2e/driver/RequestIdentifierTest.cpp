// The identifiers that let a run reject answers to earlier runs.

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Injection.hpp"
#include "NetfpMasterWire.hpp"
#include "Outcomes.hpp"
#include "Process.hpp"
#include "ScriptedPeer.hpp"
#include "Trace.hpp"

namespace {

const std::string masterPath = "/tmp/NetfpMaster";
constexpr std::int32_t portOfEth0 = 1;
constexpr std::int32_t portOfEth1 = 2;

/// The identifiers of the requests that two runs send.
std::vector<std::uint32_t> identifiersOfTwoRuns(const std::function<Outcome()>& run) {
    ScriptedPeer master = ScriptedPeer::atPath(masterPath);
    master.answers([](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(request), 0, portOfEth1));
    });
    std::vector<std::uint32_t> identifiers;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(run(), (Outcome{.status = 0, .out = "2\n", .err = ""}));
        identifiers.push_back(idOfRequest(master.requests().back()));
    }
    return identifiers;
}

}  // namespace

TEST(RequestIdentifier, RejectsALateAnswerToAnEarlierRun) {
    ScriptedPeer master = ScriptedPeer::atPath(masterPath);
    EXPECT_EQ(korvel({"getport", "eth0"}).err, "Get Port: Invalid port number \"eth0\"\n");
    const std::string earlier = master.awaitRequests(1).at(0);
    master.answers([&](const std::string& request, const ScriptedPeer::Reply& reply) {
        reply(masterResponse(idOfRequest(earlier), 0, portOfEth0));
        reply(masterResponse(idOfRequest(request), 0, portOfEth1));
    });

    EXPECT_EQ(korvel({"getport", "eth1"}), (Outcome{.status = 0, .out = "2\n", .err = ""}));
}

TEST(RequestIdentifier, DiffersFromRunToRun) {
    const auto identifiers = identifiersOfTwoRuns([] { return korvel({"getport", "eth1"}); });

    EXPECT_NE(identifiers[0], identifiers[1]);
}

TEST(RequestIdentifier, DiffersFromRunToRunBeforeTheKernelsRandomSourceIsReady) {
    const auto identifiers = identifiersOfTwoRuns([] {
        return runInjected({.faults = {"getrandom:error=EAGAIN"}}, {"korvel", "getport", "eth1"});
    });

    EXPECT_NE(identifiers[0], identifiers[1]);
}

TEST(RequestIdentifier, NeverWaitsForTheKernelsRandomSource) {
    std::vector<std::string> calls;
    runTraced("getrandom", {"korvel", "getport", "4"}, calls);

    ASSERT_FALSE(calls.empty());
    for (const std::string& call : calls) {
        const bool asks = call.starts_with("getrandom(");
        EXPECT_TRUE(!asks || call.find("GRND_NONBLOCK") != std::string::npos) << call;
    }
}
