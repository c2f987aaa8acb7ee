#pragma once

#include "Scenario.hpp"

namespace Boardsim {

/// Puts the board's files in the state that `scenario` describes: the node's kind and the private
/// configuration under /rom, the libraries' settings and the scenario itself under /run/boardsim. What
/// peers of an earlier board left behind is removed. For use inside the sandbox; throws std::system_error.
void layBoardFiles(const Scenario& scenario);

}  // namespace Boardsim
