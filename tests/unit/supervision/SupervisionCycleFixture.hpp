#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ScriptedPeer.hpp"
#include "SupervisionMgrFixture.hpp"

/// One cycle of an opened supervision. netfp_proxy sends all datagrams of the cycle, so the test decides
/// their order. The supervision identifies its peers only by the content of the answers.
class SupervisionCycleFixture : public SupervisionMgrFixture {
protected:
    static constexpr int healthy = 0;
    static constexpr int timedOut = 1;
    static constexpr int stop = 2;

    /// A dispatcher's number before the first cycle. It does not change, because the cycles here consist of
    /// single steps.
    static constexpr std::uint32_t dispatcherSequence = 0;

    /// Opens the supervision of these instances and of netfp_proxy.
    void supervise(std::initializer_list<Korvel::Configuration::DispatcherInstance> instances);

    // The expected answers of the next cycle.
    static std::string iwfAnswer(std::uint32_t status = 0);
    static std::string sfnAnswer(std::uint32_t status = 0);
    std::string proxyAnswer(std::uint32_t status = 0) const;

    /// Runs a cycle that receives these datagrams in this order. Returns its result.
    int cycle(const std::vector<std::string>& datagrams);

    /// Runs a cycle in which netfp_proxy does this.
    int cycleWhere(ScriptedPeer::Answer answer);

    std::uint32_t proxySequence = 101;  ///< netfp_proxy's number in the next cycle

private:
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};
