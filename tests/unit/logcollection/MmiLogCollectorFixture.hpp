#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MmiLogCollector.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"

/// The MMI services of both dispatcher instances, and a collector that queries the selected ones. A selection
/// lasts until the process ends.
class MmiLogCollectorFixture : public testing::Test {
protected:
    using Datagrams = std::vector<std::string>;

    static constexpr unsigned information = 1;  ///< coverage
    static constexpr unsigned statistics = 2;
    static constexpr unsigned everything = 3;
    static const std::string marker;

    void SetUp() override;
    void TearDown() override;

    static void selectIwf();
    static void selectSfn();

    /// The service answers each command with these datagrams.
    static void answers(ScriptedPeer& service, const Datagrams& datagrams);
    /// The service answers each command with its name and the marker.
    static void repeatsCommands(ScriptedPeer& service);

    void create(unsigned mask) { collector.emplace("/tmp/korvel", mask); }
    Printed collect();
    Printed collect(unsigned mask);  ///< valid after create()
    Printed show();
    Printed dump();
    bool succeeded = false;  ///< result of the last collection

    ScriptedPeer iwf = ScriptedPeer::atLocalPort(7777);
    ScriptedPeer sfn = ScriptedPeer::atLocalPort(8777);
    std::optional<Korvel::MmiLogCollector> collector;
};
