#pragma once

#include <string>

#include <gtest/gtest.h>

#include "PeerFaults.hpp"
#include "Process.hpp"
#include "Scenario.hpp"

inline const Outcome quietSuccess{.status = 0, .out = "", .err = ""};

inline Outcome failure(const std::string& message) {
    return {.status = 1, .out = "", .err = message};
}

/// A successful run that prints exactly this text.
inline void expectOutput(const Outcome& outcome, const std::string& text) {
    EXPECT_EQ(outcome.out, text);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

inline Boardsim::Scenario withMasterFault(const std::string& fault) {
    return {.faults = {Boardsim::parsePeerFault("netfp_master=" + fault)}};
}
