#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "NetFPMasterCom.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"

/// A connected client of a scripted NetFP master. By default it is not verbose, and its time-out is longer
/// than any test.
class NetFPMasterComFixture : public testing::Test {
protected:
    static constexpr std::uint32_t getSwitchPort = 4;  ///< message types
    static constexpr std::uint32_t setPortMirroring = 14;

    /// The result of a request for a port.
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
    const std::uint32_t id = nextIdentifier();  ///< identifier of the client's first request
    Korvel::NetFPMasterCom client;

private:
    /// The next number of the C library's generator.
    static std::uint32_t nextIdentifier();
};
