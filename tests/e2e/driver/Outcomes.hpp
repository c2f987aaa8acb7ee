#pragma once

#include <string>

#include "PeerFaults.hpp"
#include "Process.hpp"
#include "Scenario.hpp"

inline const Outcome quietSuccess{.status = 0, .out = "", .err = ""};

inline Outcome failure(const std::string& message) {
    return {.status = 1, .out = "", .err = message};
}

inline Boardsim::Scenario withMasterFault(const std::string& fault) {
    return {.faults = {Boardsim::parsePeerFault("netfp_master=" + fault)}};
}
