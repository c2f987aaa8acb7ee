#pragma once

#include <string>

#include "RunningBoard.hpp"

namespace Boardsim {

/// How a board is: a line for the board and one for each of its peers, or one that says why they are unknown.
std::string statusText(const RunningBoard& board);

}  // namespace Boardsim
