#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "NetFPMasterCom.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"

/// A connected client of a NetFP master that the test scripts. Quiet, and with a time-out that no test
/// lives to see, unless the test says otherwise.
class NetFPMasterComFixture : public testing::Test {
protected:
    static constexpr std::uint32_t getSwitchPort = 4;  ///< message types
    static constexpr std::uint32_t setPortMirroring = 14;

    /// What a question for a port led to.
    struct Asked {
        int port = 0;
        Printed printed;
    };

    void SetUp() override;
    void TearDown() override;

    /// The master answers every request with these datagrams.
    void masterSends(const std::vector<std::string>& datagrams);
    /// The master answers every request with one response to it.
    void masterResponds(std::int32_t errorCode, std::int32_t switchPort = 0);

    Asked ask(const std::string& interfaceName = "eth1");

    ScriptedPeer master = ScriptedPeer::atPath("/tmp/NetfpMaster");
    const std::uint32_t id = nextIdentifier();  ///< of the client's first request
    Korvel::NetFPMasterCom client;

private:
    /// What the next client will take from the C library's generator.
    static std::uint32_t nextIdentifier();
};
