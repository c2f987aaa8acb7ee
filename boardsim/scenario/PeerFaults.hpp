#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

/// Checks the name of a peer. If the peer does not exist, throws UsageError with the valid names.
std::string parsePeerName(const std::string& text);

/// Parses "PEER=FAULT" or "PEER=FAULT:N". If the peer does not have the fault, throws UsageError with the
/// valid ones.
PeerFault parsePeerFault(const std::string& text);

/// The faults in the form that parsePeerFault() parses.
std::vector<std::string> peerFaultTexts(const std::vector<PeerFault>& faults);

}  // namespace Boardsim
