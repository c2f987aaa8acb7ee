#pragma once

#include "Scenario.hpp"

namespace Boardsim {

/// Writes the files that `scenario` describes: node kind and private configuration under /rom, and the
/// settings of the stand-in libraries under /run/boardsim. Removes what peers of an earlier board left. Call
/// it only inside the sandbox. Throws std::system_error.
void writeBoardFiles(const Scenario& scenario);

}  // namespace Boardsim
