#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SmLog.hpp"

/// A log with the test's own name. The test removes it at its end.
class LogFixture : public testing::Test {
protected:
    static constexpr unsigned wholeLog = 2U << 20;  ///< bytes of a buffer that holds all that a log keeps

    /// The result of a read.
    struct Reading {
        std::string text;
        unsigned end;
    };

    LogFixture();
    void TearDown() override;

    /// This process's client. It must exist.
    SmLog& client() const;

    Reading read(unsigned start, unsigned size = wholeLog) const;
    /// The texts of all entries in the log, without time, level and tag.
    std::vector<std::string> keptTexts() const;
    void writeNumbered(int first, int count) const;

    /// Starts the log as if `written` bytes had been written and dropped. Must be the first use of the log.
    void beginAfter(std::uint64_t written) const;

    /// The texts of the entries in `log`, without time, level and tag.
    static std::vector<std::string> textsOf(const std::string& log);
    /// "entry FIRST" and so on, `count` of them.
    static std::vector<std::string> numbered(int first, int count);

    const std::string name;
    const std::string path;  ///< of the log's memory
};
