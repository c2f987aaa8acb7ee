#pragma once

#include <string>

namespace Boardsim {

/// What the NetFP processes without a table of their own have to say in their dumps.
std::string netfpProxyState();
std::string netfpServerState();
std::string resourceManagerState();

}  // namespace Boardsim
