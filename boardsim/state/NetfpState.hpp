#pragma once

#include <string>

#include "SystemState.hpp"

namespace Boardsim {

/// The dumps of the NetFP processes that have no table. Without a state, the numbers are invented.
std::string netfpProxyState(const SystemState* state = nullptr);
std::string netfpServerState(const SystemState* state = nullptr);
std::string resourceManagerState(const SystemState* state = nullptr);

}  // namespace Boardsim
