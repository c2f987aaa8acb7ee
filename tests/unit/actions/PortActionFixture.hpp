#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Printed.hpp"
#include "ScriptedPeer.hpp"
#include "SimpleAction.hpp"

/// An action on switch ports, and the NetFP master that it asks.
class PortActionFixture : public testing::Test {
protected:
    static constexpr std::uint32_t getSwitchPort = 4;  ///< message types
    static constexpr std::uint32_t setPortMirroring = 14;

    void TearDown() override;

    /// The master knows these interfaces. Every other request is answered with `errorOf` its number, counted
    /// from 0 among those that are no look-ups.
    void givenMaster(const std::map<std::string, int>& ports, std::function<int(std::size_t)> errorOf);
    /// The same, with success.
    void givenMaster(const std::map<std::string, int>& ports);

    /// Runs the action with these words, its keyword first. What it prints is in `printed`.
    bool run(Korvel::SimpleAction& action, const std::vector<std::string>& words);

    /// What the master received: "port NAME" for a look-up, and the body's bytes of any other request.
    std::vector<std::string> requests() const;

    ScriptedPeer master = ScriptedPeer::atPath("/tmp/NetfpMaster");
    Printed printed;
};
