#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ScriptedPeer.hpp"
#include "SupervisionMgrFixture.hpp"

/// One cycle of a supervision that has begun. Whatever is to come in it, netfp_proxy sends: the supervision
/// tells its peers apart by what their answers say, and so the order is the test's.
class SupervisionCycleFixture : public SupervisionMgrFixture {
protected:
    static constexpr int healthy = 0;
    static constexpr int timedOut = 1;
    static constexpr int stop = 2;

    /// A dispatcher's number before the first cycle, which stays as the cycles here are made of single steps.
    static constexpr std::uint32_t dispatcherSequence = 0;

    /// Opens the supervision of these instances and of netfp_proxy.
    void supervise(std::initializer_list<Korvel::Configuration::DispatcherInstance> instances);

    // The answers that are due in the next cycle.
    static std::string iwfAnswer(std::uint32_t status = 0);
    static std::string sfnAnswer(std::uint32_t status = 0);
    std::string proxyAnswer(std::uint32_t status = 0) const;

    /// A cycle in which these datagrams come, in this order. What it returned.
    int cycle(const std::vector<std::string>& datagrams);

    /// A cycle in which netfp_proxy does this.
    int cycleWhere(ScriptedPeer::Answer answer);

    std::uint32_t proxySequence = 101;  ///< netfp_proxy's number in the next cycle

private:
    ScriptedPeer proxy = ScriptedPeer::atNetlinkPort(proxyPort);
};
