#pragma once

#include <string>

#include "LogLine.hpp"
#include "TrafficSimulation.hpp"

namespace Boardsim {

/// The log entries of netfp_server for the second that changed the board's state from `before` to `after`.
LogLines systemEvents(const BoardState& before, const BoardState& after);

/// The entry for a packet from the unknown host `address`. `number` is a security parameter index (SPI).
std::string strangerInTunnel(const std::string& address, const std::string& number);

}  // namespace Boardsim
