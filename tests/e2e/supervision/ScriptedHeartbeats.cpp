#include "ScriptedHeartbeats.hpp"

#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

std::string heartbeatAnswer(const std::string& request, std::uint32_t portId, std::uint32_t status) {
    const std::uint32_t responseType = numberAt(request, netlinkPayloadOffset) + 1;
    return netlinkMessage(numberAt(request, netlinkSequenceOffset), portId,
                          statusPayload(responseType, status));
}

unsigned cycleOf(const std::string& request) {
    constexpr std::uint32_t firstOfProxy = 100;
    return numberAt(request, netlinkSequenceOffset) % firstOfProxy;
}

ScriptedPeer::Answer heartbeats(std::uint32_t portId, const Heartbeat& heartbeat) {
    return [=](const std::string& request, const ScriptedPeer::Reply& reply) {
        if (const auto status = heartbeat(cycleOf(request))) {
            reply(heartbeatAnswer(request, portId, *status));
        }
    };
}

Heartbeat healthyUntil(unsigned cycle) {
    return [=](unsigned current) { return current < cycle ? 0U : 1U; };
}
