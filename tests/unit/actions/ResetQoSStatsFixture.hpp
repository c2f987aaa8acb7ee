#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Configuration.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"

/// The action "resetqosstats", and the services of both dispatcher instances. A selection of instances lasts
/// until the process ends.
class ResetQoSStatsFixture : public testing::Test {
protected:
    using Datagrams = std::vector<std::string>;

    static const std::string marker;
    static const std::string timedOut;  ///< the error if no answer arrives

    static void select(Korvel::Configuration::DispatcherInstance instance);

    /// The service answers each request with these datagrams.
    static void answers(ScriptedPeer& service, const Datagrams& datagrams);

    /// Sends a datagram from another port of another local address to a waiting action.
    static void sendFromElsewhere(std::string_view bytes);

    /// Constructs an action, runs it with these words after its keyword, and destroys it. Stores its output
    /// in `printed`.
    bool reset(const std::vector<std::string>& arguments = {});

    ScriptedPeer iwf = ScriptedPeer::atLocalPort(7777);
    ScriptedPeer sfn = ScriptedPeer::atLocalPort(8777);
    Printed printed;
};
