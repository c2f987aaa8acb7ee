#include "SupervisionCycleFixture.hpp"

#include <thread>
#include <utility>

#include "NetlinkWire.hpp"

void SupervisionCycleFixture::supervise(
    std::initializer_list<Korvel::Configuration::DispatcherInstance> instances) {
    select(instances);
    ASSERT_TRUE(manager.initialize());
}

std::string SupervisionCycleFixture::iwfAnswer(std::uint32_t status) {
    return netlinkMessage(dispatcherSequence, iwfPort, statusPayload(dispatcherResponse, status));
}

std::string SupervisionCycleFixture::sfnAnswer(std::uint32_t status) {
    return netlinkMessage(dispatcherSequence, sfnPort, statusPayload(dispatcherResponse, status));
}

std::string SupervisionCycleFixture::proxyAnswer(std::uint32_t status) const {
    return netlinkMessage(proxySequence, proxyPort, statusPayload(proxyResponse, status));
}

int SupervisionCycleFixture::cycle(const std::vector<std::string>& datagrams) {
    return cycleWhere([datagrams](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (const std::string& datagram : datagrams) {
            while (!reply(datagram)) {
                std::this_thread::yield();  // until the supervision has read
            }
        }
    });
}

int SupervisionCycleFixture::cycleWhere(ScriptedPeer::Answer answer) {
    proxy.answers(std::move(answer));
    int result = -1;
    printed = printedBy([&] {
        manager.sendNetfpProxyHearbeatReq();
        result = manager.waitForHeartbeatsResp();
    });
    ++proxySequence;
    return result;
}
