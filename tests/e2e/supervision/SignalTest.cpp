// Signals that arrive between two cycles.

#include <chrono>
#include <csignal>
#include <thread>

#include "ScriptedHeartbeats.hpp"
#include "SupervisionFixture.hpp"

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

class SupervisionSignalTest : public SupervisionFixture {
protected:
    void SetUp() override {
        iwf.answers(heartbeats(iwfPort, healthyUntil(2)));
        proxy.answers(heartbeats(proxyPort, healthyUntil(2)));
    }

    /// A supervision that pauses after its first cycle.
    std::unique_ptr<Process> startPausedSupervision() const {
        std::unique_ptr<Process> run = startSupervision({"-d", "iwf"});
        proxy.awaitRequests(1);
        std::this_thread::sleep_for(500ms);  // until the answers have arrived and are handled
        return run;
    }

    ScriptedPeer iwf = ScriptedPeer::atNetlinkPort(iwfPort);
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};

}  // namespace

TEST_F(SupervisionSignalTest, SigtermEndsThePause) {
    const std::unique_ptr<Process> run = startPausedSupervision();

    ::kill(run->pid(), SIGTERM);

    EXPECT_EQ(run->wait(), (Outcome{128 + SIGTERM, "", ""}));
    EXPECT_EQ(proxy.requests().size(), 1);
    expectInSharedMemory({started("IWF")});
}

TEST_F(SupervisionSignalTest, OtherSignalsDoNotShortenThePause) {
    const auto start = steady_clock::now();
    const std::unique_ptr<Process> run = startPausedSupervision();

    while (proxy.requests().size() < 2) {
        for (const int signal : {SIGWINCH, SIGURG, SIGSTOP, SIGCONT}) {
            ::kill(run->pid(), signal);
            std::this_thread::sleep_for(2ms);
        }
    }

    EXPECT_GE(steady_clock::now() - start, 4s);
    const std::string statusLine = "Heartbeat status: IWF Dispatcher:ERROR NetfpProxy: ERROR";
    EXPECT_EQ(run->wait(), endedWith(statusLine));
    expectInSharedMemory({started("IWF"), error(statusLine)});
}
