#pragma once

#include <string>

namespace Korvel {

// How the actions on switch ports take an argument that is either an interface's name or a port number.

/// The NetFP master does not tell.
constexpr int noPort = -1;

/// The switch port that `argument` stands for: the number that it begins with, without a check of its range;
/// where that is below zero or missing, what the NetFP master knows about an interface of this name. `action`
/// begins the lines that are printed here. A look-up that fails other than by running out of time is
/// reported. Throws std::out_of_range, whose text is the message for the operator, where the number does not
/// fit 32 bits.
int resolvePort(const std::string& action, const std::string& argument);

/// Whether the switch has an external port of this number.
bool isSwitchPort(int port);

}  // namespace Korvel
