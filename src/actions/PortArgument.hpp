#pragma once

#include <string>

namespace Korvel {

// Port arguments of actions: an interface name or a port number.

/// The NetFP master reports no port.
constexpr int noPort = -1;

/// Returns the switch port that `argument` specifies. If `argument` starts with a number, returns that number
/// without a range check. If there is no number or it is negative, asks the NetFP master for the port of the
/// interface `argument`, and returns noPort if that fails.
///
/// `action` is the prefix of printed lines. A failed look-up is reported, unless it timed out. Throws
/// std::out_of_range, with the message for the operator, if the number does not fit into 32 bits.
int resolvePort(const std::string& action, const std::string& argument);

/// Returns true if the switch has an external port with this number.
bool isSwitchPort(int port);

}  // namespace Korvel
