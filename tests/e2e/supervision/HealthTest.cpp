// Peers that report their status.

#include <chrono>
#include <thread>

#include "NetlinkWire.hpp"
#include "SupervisionFixture.hpp"
#include "WireNumber.hpp"

using Boardsim::Deployment;
using namespace std::chrono_literals;

namespace {

class SupervisionHealthTest : public SupervisionFixture {
protected:
    /// The requests of these sequence numbers from a process.
    static Words requests(pid_t from, std::uint32_t messageType, const std::vector<std::uint32_t>& numbers) {
        Words all;
        for (const std::uint32_t number : numbers) {
            all.push_back(
                netlinkMessage(number, static_cast<std::uint32_t>(from), littleEndian(messageType)));
        }
        return all;
    }

    static constexpr std::uint32_t dispatcherRequest = 13;
    static constexpr std::uint32_t proxyRequest = 17;
};

}  // namespace

TEST_F(SupervisionHealthTest, AsksEveryFourSecondsUntilAPeerReportsAnError) {
    startBoard();
    const auto start = std::chrono::steady_clock::now();
    const std::unique_ptr<Process> run = startSupervision();
    const pid_t pid = run->pid();
    awaitRequestsTo("netfp_proxy", 2);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 4s);
    std::this_thread::sleep_for(1s);  // until the answers of the second cycle arrive
    setStatus("sfn_dispatcher", 3);

    const Outcome outcome = run->wait();

    const std::string statusLine = "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: OK";
    EXPECT_EQ(outcome, endedWith(statusLine));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 8s);
    EXPECT_EQ(requestsTo("iwf_dispatcher"), requests(pid, dispatcherRequest, {1, 2, 3}));
    EXPECT_EQ(requestsTo("sfn_dispatcher"), requests(pid, dispatcherRequest, {1, 2, 3}));
    EXPECT_EQ(requestsTo("netfp_proxy"), requests(pid, proxyRequest, {101, 102, 103}));
    expectLogged({started("IWF SFN"), error(statusLine)});
}

TEST_F(SupervisionHealthTest, EndsAtTheFirstErrorOfAnyPeer) {
    const struct {
        std::string peer;
        std::string statusLine;
    } cases[] = {
        {"iwf_dispatcher", "Heartbeat status: IWF Dispatcher:ERROR SFN Dispatcher:OK NetfpProxy: OK"},
        {"sfn_dispatcher", "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: OK"},
        {"netfp_proxy", "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR"},
    };
    Records records;
    for (const auto& [peer, statusLine] : cases) {
        startBoard();
        setStatus(peer, 1);

        EXPECT_EQ(supervise(), endedWith(statusLine));

        records.insert(records.end(), {started("IWF SFN"), error(statusLine)});
    }
    expectInSharedMemory(records);
}

TEST_F(SupervisionHealthTest, AsksTheDispatchersOfTheOptionOrOfTheDeployment) {
    const struct {
        Words options;
        Deployment deployment;
        std::string dispatchers;
        std::string statusLine;
        std::size_t iwfRequests;
        std::size_t sfnRequests;
    } cases[] = {
        {{"-d", "iwf"},
         Deployment::sfnMaster,
         "IWF",
         "Heartbeat status: IWF Dispatcher:OK NetfpProxy: ERROR",
         1,
         0},
        {{"-d", "sfn"},
         Deployment::sfnMaster,
         "SFN",
         "Heartbeat status: SFN Dispatcher:OK NetfpProxy: ERROR",
         0,
         1},
        {{"-d", "all"},
         Deployment::sfnMaster,
         "IWF SFN",
         "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR",
         1,
         1},
        {{},
         Deployment::sfnMaster,
         "IWF SFN",
         "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR",
         1,
         1},
        {{}, Deployment::iwf, "IWF", "Heartbeat status: IWF Dispatcher:OK NetfpProxy: ERROR", 1, 0},
        {{}, Deployment::sfnAntenna, "SFN", "Heartbeat status: SFN Dispatcher:OK NetfpProxy: ERROR", 0, 1},
    };
    Records records;
    for (const auto& each : cases) {
        startBoard({.deployment = each.deployment});
        setStatus("netfp_proxy", 3);

        EXPECT_EQ(supervise(each.options), endedWith(each.statusLine));

        EXPECT_EQ(requestsTo("iwf_dispatcher").size(), each.iwfRequests);
        EXPECT_EQ(requestsTo("sfn_dispatcher").size(), each.sfnRequests);
        EXPECT_EQ(requestsTo("netfp_proxy").size(), 1);
        records.insert(records.end(), {started(each.dispatchers), error(each.statusLine)});
    }
    expectInSharedMemory(records);
}

TEST_F(SupervisionHealthTest, IgnoresFurtherArguments) {
    startBoard();
    setStatus("netfp_proxy", 3);

    EXPECT_EQ(korvel({"supervision", "-d", "iwf", "getport", "eth1"}),
              endedWith("Heartbeat status: IWF Dispatcher:OK NetfpProxy: ERROR"));
}
