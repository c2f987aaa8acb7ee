#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SmLog.hpp"

/// A log under a name of the test's own, gone when the test is.
class LogFixture : public testing::Test {
protected:
    static constexpr unsigned wholeLog = 2U << 20;  ///< bytes of a buffer that holds all that a log keeps

    /// What one read gave.
    struct Reading {
        std::string text;
        unsigned end;
    };

    LogFixture();
    void TearDown() override;

    /// This process's client, which must be there.
    SmLog& client() const;

    Reading read(unsigned start, unsigned size = wholeLog) const;
    /// The texts, without time, level and tag, of all entries that are kept.
    std::vector<std::string> keptTexts() const;
    void writeNumbered(int first, int count) const;

    /// Has the log begin as if `written` bytes had been written and dropped. Before anybody uses it.
    void beginAfter(std::uint64_t written) const;

    /// The texts of the entries in `log`, without time, level and tag.
    static std::vector<std::string> textsOf(const std::string& log);
    /// "entry FIRST" and so on, `count` of them.
    static std::vector<std::string> numbered(int first, int count);

    const std::string name;
    const std::string path;  ///< of the log's memory
};
