#pragma once

#include <memory>
#include <vector>

#include "IManager.hpp"

namespace Korvel {

/// The request managers, in the order in which they are asked for their keywords and print their help.
/// Filled once by registerManagers(); they live until the process exits.
extern std::vector<std::unique_ptr<IManager>> managers;

void registerManagers();

}  // namespace Korvel
