#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "DatagramClient.hpp"
#include "Fault.hpp"
#include "PeerThread.hpp"

/// A peer that takes two kinds of request, and what a client exchanges with it.
class NetlinkPeerFixture : public testing::Test {
protected:
    static constexpr std::uint32_t peerPort = 110;

    // One kind is a message type alone and is answered with status 3; the other has a letter behind it, and
    // that letter is the answer's status.
    static constexpr std::uint32_t plainRequest = 17;
    static constexpr std::uint32_t plainResponse = 18;
    static constexpr std::uint32_t plainStatus = 3;
    static constexpr std::uint32_t letterRequest = 23;
    static constexpr std::uint32_t letterResponse = 24;

    /// A peer with this fault, served until it is destroyed.
    static Boardsim::PeerThread peerWith(const Boardsim::Fault& fault);

    static std::uint32_t ownPort();

    /// A request of this process's.
    static std::string request(std::uint32_t sequence, std::string_view payload);
    static std::string plain(std::uint32_t sequence);

    /// What a peer without fault answers to plain(sequence).
    static std::string answerToPlain(std::uint32_t sequence);

    DatagramClient client = DatagramClient::ofNetlinkPort(peerPort);
};
