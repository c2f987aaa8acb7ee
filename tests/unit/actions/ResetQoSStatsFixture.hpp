#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Configuration.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"

/// The action "resetqosstats", and the services of both dispatcher instances that it talks to. A selection
/// of instances lasts as long as the process does.
class ResetQoSStatsFixture : public testing::Test {
protected:
    using Datagrams = std::vector<std::string>;

    static const std::string marker;
    static const std::string timedOut;  ///< what is printed where nothing comes

    static void select(Korvel::Configuration::DispatcherInstance instance);

    /// The service answers each request with these datagrams.
    static void answers(ScriptedPeer& service, const Datagrams& datagrams);

    /// Sends a datagram from some other port to an action that waits, at another of this machine's addresses.
    static void sendFromElsewhere(std::string_view bytes);

    /// Runs an action from its construction to its destruction, with these words behind its keyword. What it
    /// prints is in `printed`.
    bool reset(const std::vector<std::string>& arguments = {});

    ScriptedPeer iwf = ScriptedPeer::atLocalPort(7777);
    ScriptedPeer sfn = ScriptedPeer::atLocalPort(8777);
    Printed printed;
};
