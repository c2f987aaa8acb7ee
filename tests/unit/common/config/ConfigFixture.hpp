#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Config.hpp"
#include "OutputCapture.hpp"
#include "SystemLog.hpp"

/// A board with files from the test, and its system log. In verbose mode.
class ConfigFixture : public testing::Test {
protected:
    static constexpr const char* configurationFile = "/rom/private/fpdispatcher.conf";

    void SetUp() override;
    void TearDown() override;

    /// The board's configuration with `text` in its file.
    static Config configOf(const std::string& text);
    /// The board's configuration with the existing file or without one.
    static Config config();

    static void secureTheBoard();
    static void failTheQueryForASecuredBoard();

    /// The records of this program since the last call, each as "LEVEL: TEXT".
    std::vector<std::string> records();

private:
    SystemLog systemLog;
    OutputCapture lineEnds;  // of the records
};
