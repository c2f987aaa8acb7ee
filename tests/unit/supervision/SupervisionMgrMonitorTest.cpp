// Whole cycles: the requests to each peer, and the start of the next cycle.

#include <chrono>

#include <unistd.h>

#include "NetlinkWire.hpp"
#include "ScriptedPeer.hpp"
#include "SignalStorm.hpp"
#include "SupervisionMgrFixture.hpp"
#include "WireNumber.hpp"

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class SupervisionMgrMonitorTest : public SupervisionMgrFixture {
protected:
    static std::string requestToDispatcher(std::uint32_t sequence) {
        return netlinkMessage(sequence, ownPort(), littleEndian(dispatcherRequest));
    }
    static std::string requestToProxy(std::uint32_t sequence) {
        return netlinkMessage(sequence, ownPort(), littleEndian(proxyRequest));
    }

    static std::string dispatcherAnswer(std::uint32_t sequence, std::uint32_t port, std::uint32_t status) {
        return netlinkMessage(sequence, port, statusPayload(dispatcherResponse, status));
    }
    static std::string proxyAnswer(std::uint32_t sequence, std::uint32_t status) {
        return netlinkMessage(sequence, proxyPort, statusPayload(proxyResponse, status));
    }

    /// The peer answers requests with this number with these datagrams, and no others.
    static void answers(ScriptedPeer& peer, std::uint32_t sequence,
                        const std::vector<std::string>& datagrams) {
        peer.answers([=](const std::string& request, const ScriptedPeer::Reply& reply) {
            if (numberAt(request, netlinkSequenceOffset) == sequence) {
                for (const std::string& datagram : datagrams) {
                    reply(datagram);
                }
            }
        });
    }

private:
    static std::uint32_t ownPort() { return static_cast<std::uint32_t>(::getpid()); }
};

}  // namespace

TEST_F(SupervisionMgrMonitorTest, AsksBothDispatchersAndNetfpProxy) {
    ScriptedPeer iwfPeer = ScriptedPeer::atNetlinkPort(iwfPort);
    const ScriptedPeer sfnPeer = ScriptedPeer::atNetlinkPort(sfnPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({iwf, sfn});
    answers(proxy, 101,
            {dispatcherAnswer(1, iwfPort, 0), dispatcherAnswer(1, sfnPort, 3), proxyAnswer(101, 0)});

    EXPECT_FALSE(run());

    const std::string statusLine = "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:ERROR NetfpProxy: OK";
    EXPECT_EQ(printed, Printed{.err = statusLine + "\n"});
    expectLogged(
        {information("Starting supervision of dispatcher IWF SFN and netfp_proxy"), error(statusLine)});
    EXPECT_EQ(iwfPeer.awaitRequests(1), std::vector{requestToDispatcher(1)});
    EXPECT_EQ(sfnPeer.awaitRequests(1), std::vector{requestToDispatcher(1)});
    EXPECT_EQ(proxy.requests(), std::vector{requestToProxy(101)});
}

TEST_F(SupervisionMgrMonitorTest, AsksOnlyTheIwfDispatcherIfOnlyItIsSelected) {
    const ScriptedPeer iwfPeer = ScriptedPeer::atNetlinkPort(iwfPort);
    const ScriptedPeer sfnPeer = ScriptedPeer::atNetlinkPort(sfnPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({iwf});
    answers(proxy, 101, {dispatcherAnswer(1, iwfPort, 1), proxyAnswer(101, 0)});

    EXPECT_FALSE(run());

    expectLogged({information("Starting supervision of dispatcher IWF and netfp_proxy"),
                  error("Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: OK")});
    EXPECT_EQ(iwfPeer.awaitRequests(1), std::vector{requestToDispatcher(1)});
    EXPECT_EQ(sfnPeer.requests(), std::vector<std::string>{});
}

TEST_F(SupervisionMgrMonitorTest, AsksOnlyTheSfnDispatcherIfOnlyItIsSelected) {
    const ScriptedPeer iwfPeer = ScriptedPeer::atNetlinkPort(iwfPort);
    const ScriptedPeer sfnPeer = ScriptedPeer::atNetlinkPort(sfnPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({sfn});
    answers(proxy, 101, {dispatcherAnswer(1, sfnPort, 0), proxyAnswer(101, 1)});

    EXPECT_FALSE(run());

    expectLogged({information("Starting supervision of dispatcher SFN and netfp_proxy"),
                  error("Heartbeat status: SFN Dispatcher:OK NetfpProxy: ERROR")});
    EXPECT_EQ(iwfPeer.requests(), std::vector<std::string>{});
    EXPECT_EQ(sfnPeer.awaitRequests(1), std::vector{requestToDispatcher(1)});
}

TEST_F(SupervisionMgrMonitorTest, NumbersItsRequestsAcrossCycles) {
    const ScriptedPeer iwfPeer = ScriptedPeer::atNetlinkPort(iwfPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({iwf});
    answers(proxy, 103, {dispatcherAnswer(3, iwfPort, 1), proxyAnswer(103, 0)});

    EXPECT_FALSE(run());

    const Record timeOut = error("poll(): Timed out while waiting for response");
    const Record silence =
        information("Heartbeat status: IWF Dispatcher:NOT_RECEIVED NetfpProxy: NOT_RECEIVED");
    EXPECT_EQ(printed, (Printed{.err = "Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: OK\n"}));
    expectLogged({information("Starting supervision of dispatcher IWF and netfp_proxy"), timeOut, silence,
                  timeOut, silence, error("Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: OK")});
    EXPECT_EQ(iwfPeer.awaitRequests(3),
              (std::vector{requestToDispatcher(1), requestToDispatcher(2), requestToDispatcher(3)}));
    EXPECT_EQ(proxy.requests(), (std::vector{requestToProxy(101), requestToProxy(102), requestToProxy(103)}));
}

TEST_F(SupervisionMgrMonitorTest, ReportsEachRequestThatCannotBeSent) {
    select({iwf, sfn});
    ASSERT_TRUE(manager.initialize());

    EXPECT_EQ(printedBy([&] {
                  manager.sendDispatcherHeartbeatReq(iwfPort);
                  manager.sendDispatcherHeartbeatReq(sfnPort);
                  manager.sendNetfpProxyHearbeatReq();
              }),
              Printed{});

    expectLogged({error("Error while sending heartbeat request to dispatcher, errno: Connection refused"),
                  error("Error while sending heartbeat request to dispatcher, errno: Connection refused"),
                  error("Error while sending heartbeat request to netfp proxy, errno: Connection refused")});
}

TEST_F(SupervisionMgrMonitorTest, ContinuesACycleIfARequestToADispatcherCannotBeSent) {
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({iwf});
    answers(proxy, 101, {dispatcherAnswer(1, iwfPort, 0), proxyAnswer(101, 1)});

    EXPECT_FALSE(run());

    expectLogged({information("Starting supervision of dispatcher IWF and netfp_proxy"),
                  error("Error while sending heartbeat request to dispatcher, errno: Connection refused"),
                  error("Heartbeat status: IWF Dispatcher:OK NetfpProxy: ERROR")});
}

TEST_F(SupervisionMgrMonitorTest, AdvancesTheNumberOfNetfpProxyEvenIfTheRequestCannotBeSent) {
    select({iwf});
    ASSERT_TRUE(manager.initialize());
    manager.sendNetfpProxyHearbeatReq();
    const ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);

    manager.sendNetfpProxyHearbeatReq();

    EXPECT_EQ(proxy.awaitRequests(1), std::vector{requestToProxy(102)});
}

TEST_F(SupervisionMgrMonitorTest, PausesFourSecondsAfterAHealthyCycleDespiteSignals) {
    ScriptedPeer iwfPeer = ScriptedPeer::atNetlinkPort(iwfPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
    select({iwf});
    answers(proxy, 101, {dispatcherAnswer(1, iwfPort, 0), proxyAnswer(101, 0)});
    answers(iwfPeer, 2, {dispatcherAnswer(2, iwfPort, 1), proxyAnswer(102, 0)});
    const SignalStorm storm;
    const auto start = steady_clock::now();

    EXPECT_FALSE(run());

    EXPECT_GE(steady_clock::now() - start, 4s);
    expectLogged({information("Starting supervision of dispatcher IWF and netfp_proxy"),
                  error("Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: OK")});
    EXPECT_EQ(proxy.awaitRequests(2), (std::vector{requestToProxy(101), requestToProxy(102)}));
}
