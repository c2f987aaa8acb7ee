#pragma once

#include <string>

#include "RunningBoard.hpp"

namespace Boardsim {

/// One line for the board and one per peer, or one that explains why the peers are unknown.
std::string statusText(const RunningBoard& board);

}  // namespace Boardsim
