#pragma once

#include <limits>
#include <string>

namespace Korvel {

// How the actions on switch ports take an argument that is either an interface's name or a port number.

/// The NetFP master does not tell.
constexpr int noPort = -1;

/// A number beyond 32 bits; nothing else gives this value.
constexpr int portOutOfRange = std::numeric_limits<int>::min();

/// The switch port that `argument` stands for: the number that it begins with, without a check of its range;
/// where that is below zero or missing, what the NetFP master knows about an interface of this name. `action`
/// begins the lines that are printed here. A number beyond 32 bits is reported, and so is a look-up that
/// fails other than by running out of time.
int resolvePort(const std::string& action, const std::string& argument);

/// Whether the switch has an external port of this number.
bool isSwitchPort(int port);

}  // namespace Korvel
