#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Configuration.hpp"
#include "Printed.hpp"
#include "SupervisionMgr.hpp"
#include "SystemLog.hpp"

/// A supervision before its start, and both of its logs.
class SupervisionMgrFixture : public testing::Test {
protected:
    static constexpr auto iwf = Korvel::Configuration::IWF;
    static constexpr auto sfn = Korvel::Configuration::SFN;

    static constexpr std::uint32_t proxyPort = 110;
    static constexpr std::uint32_t iwfPort = 120;
    static constexpr std::uint32_t sfnPort = 130;

    static constexpr std::uint32_t dispatcherRequest = 13;  ///< message types
    static constexpr std::uint32_t dispatcherResponse = 14;
    static constexpr std::uint32_t proxyRequest = 17;
    static constexpr std::uint32_t proxyResponse = 18;

    /// A message as each log shows it.
    struct Record {
        std::string inSharedMemory;
        std::string inSystemLog;
    };
    static Record error(const std::string& text);
    static Record information(const std::string& text);

    /// Selects instances for the rest of the process.
    static void select(std::initializer_list<Korvel::Configuration::DispatcherInstance> instances);

    /// Runs the supervision to its end.
    bool run();

    /// Checks that both logs have exactly these messages. The system log holds ten records.
    void expectLogged(const std::vector<Record>& records);

    /// The entries of the shared-memory log.
    static std::vector<std::string> sharedMemoryLog();

    Korvel::SupervisionMgr manager;
    SystemLog systemLog;
    Printed printed;  ///< set by run()
};
