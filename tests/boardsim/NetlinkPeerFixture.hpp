#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "DatagramClient.hpp"
#include "Fault.hpp"
#include "PeerThread.hpp"

/// A peer that accepts two kinds of request, and the datagrams of its client.
class NetlinkPeerFixture : public testing::Test {
protected:
    static constexpr std::uint32_t peerPort = 110;

    // One kind is only a message type, and its answer has status 3. The other has a letter after the type,
    // and the answer's status is that letter.
    static constexpr std::uint32_t plainRequest = 17;
    static constexpr std::uint32_t plainResponse = 18;
    static constexpr std::uint32_t plainStatus = 3;
    static constexpr std::uint32_t letterRequest = 23;
    static constexpr std::uint32_t letterResponse = 24;

    /// A peer with this fault. It runs until it is destroyed.
    static Boardsim::PeerThread peerWith(const Boardsim::Fault& fault);

    static std::uint32_t ownPort();

    /// A request from this process.
    static std::string request(std::uint32_t sequence, std::string_view payload);
    static std::string plain(std::uint32_t sequence);

    /// The answer of a peer without a fault to plain(sequence).
    static std::string answerToPlain(std::uint32_t sequence);

    DatagramClient client = DatagramClient::ofNetlinkPort(peerPort);
};
