#pragma once

#include <string>

namespace Boardsim {

/// The dumps of the NetFP processes that have no table.
std::string netfpProxyState();
std::string netfpServerState();
std::string resourceManagerState();

}  // namespace Boardsim
