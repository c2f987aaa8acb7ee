#pragma once

#include <gtest/gtest.h>

/// Prints the command line that repeats a failed test, and the commands that the test ran.
class RepeatHint : public testing::EmptyTestEventListener {
private:
    void OnTestEnd(const testing::TestInfo& test) override;
};
