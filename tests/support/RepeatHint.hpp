#pragma once

#include <gtest/gtest.h>

/// Prints, for each test that fails, the command line that repeats it and the commands that it ran.
class RepeatHint : public testing::EmptyTestEventListener {
private:
    void OnTestEnd(const testing::TestInfo& test) override;
};
