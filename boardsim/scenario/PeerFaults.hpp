#pragma once

#include <string>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

/// The name of a peer. If it is none, throws UsageError with the valid ones.
std::string parsePeerName(const std::string& text);

/// A fault out of "PEER=FAULT" or "PEER=FAULT:N". If the peer does not have it, throws UsageError with the
/// valid ones.
PeerFault parsePeerFault(const std::string& text);

/// The faults in the form that parsePeerFault() parses.
std::vector<std::string> peerFaultTexts(const std::vector<PeerFault>& faults);

}  // namespace Boardsim
