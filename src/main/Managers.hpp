#pragma once

#include <memory>
#include <vector>

#include "IManager.hpp"

namespace Korvel {

/// The request managers, in the order of keyword detection and of the help text. registerManagers() fills the
/// vector once; the managers live until the process exits.
extern std::vector<std::unique_ptr<IManager>> managers;

void registerManagers();

}  // namespace Korvel
