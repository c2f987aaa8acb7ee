#pragma once

#include <cstdint>
#include <string>

#include "DispatcherState.hpp"
#include "LogLine.hpp"

namespace Boardsim {

/// The log entries of a dispatcher for the second that changed its state from `before` to `after`.
LogLines dispatcherEvents(const DispatcherState& before, const DispatcherState& after, std::uint64_t second);

/// The entry for a datagram from the unknown host `address`. `number` is a tunnel endpoint.
std::string strangerAtSocket(const std::string& address, const std::string& number);

}  // namespace Boardsim
