#include "NetlinkPeerFixture.hpp"

#include <memory>

#include <unistd.h>

#include "NetlinkPeer.hpp"
#include "NetlinkWire.hpp"
#include "WireNumber.hpp"

using Boardsim::Fault;
using Boardsim::NetlinkPeer;
using Boardsim::PeerThread;

PeerThread NetlinkPeerFixture::peerWith(const Fault& fault) {
    const std::vector<NetlinkPeer::Service> services{
        {plainRequest, 4, plainResponse, [](std::string_view /*payload*/) { return plainStatus; },
         [](std::string_view /*payload*/) { return std::string("plain"); }},
        {letterRequest, 5, letterResponse,
         [](std::string_view payload) { return static_cast<std::uint32_t>(payload[4]); },
         [](std::string_view payload) { return "letter " + std::string(payload.substr(4)); }},
    };
    return PeerThread(std::make_unique<NetlinkPeer>("netfp_proxy", peerPort, services, fault));
}

std::uint32_t NetlinkPeerFixture::ownPort() {
    return static_cast<std::uint32_t>(::getpid());
}

std::string NetlinkPeerFixture::request(std::uint32_t sequence, std::string_view payload) {
    return netlinkMessage(sequence, ownPort(), payload);
}

std::string NetlinkPeerFixture::plain(std::uint32_t sequence) {
    return request(sequence, littleEndian(plainRequest));
}

std::string NetlinkPeerFixture::answerToPlain(std::uint32_t sequence) {
    return netlinkMessage(sequence, peerPort, statusPayload(plainResponse, plainStatus));
}
