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

/// An action on switch ports, and its NetFP master.
class PortActionFixture : public testing::Test {
protected:
    static constexpr std::uint32_t getSwitchPort = 4;  ///< message types
    static constexpr std::uint32_t setPortMirroring = 14;

    void TearDown() override;

    /// The master knows these interfaces. It answers each other request with `errorOf` its number, counted
    /// from 0 without the look-ups.
    void givenMaster(const std::map<std::string, int>& ports, std::function<int(std::size_t)> errorOf);
    /// The same, with success.
    void givenMaster(const std::map<std::string, int>& ports);

    /// Runs the action with these words, its keyword first. Stores its output in `printed`.
    bool run(Korvel::SimpleAction& action, const std::vector<std::string>& words);

    /// The requests that the master received: "port NAME" for a look-up, and the body's bytes of any other
    /// request.
    std::vector<std::string> requests() const;

    ScriptedPeer master = ScriptedPeer::atPath("/tmp/NetfpMaster");
    Printed printed;
};
