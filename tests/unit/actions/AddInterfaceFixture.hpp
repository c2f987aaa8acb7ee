#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AddInterfaceAction.hpp"
#include "Printed.hpp"

/// The action "add_interface" and what it prints.
class AddInterfaceFixture : public testing::Test {
protected:
    static constexpr std::uint32_t proxyPort = 110;
    static constexpr const char* logName = "dispatcher_log_memory";

    /// Runs the action with these words after its keyword.
    bool run(const std::vector<std::string>& names);

    /// The same. Stores its output in `printed`.
    bool add(const std::vector<std::string>& names);

    static Printed successOf(const std::string& name);
    /// `reason`: the text before the last line.
    static Printed failureOf(const std::string& name, const std::string& reason = {});

    /// The datagram that asks for `name`.
    static std::string requestFor(const std::string& name);
    /// The payload of netfp_proxy's answer.
    static std::string responsePayload(std::uint32_t status);

    /// The reports of the transport in the shared-memory log.
    using Reports = std::vector<std::string>;
    static Reports reports();

    Korvel::AddInterfaceAction action;
    Printed printed;
};
