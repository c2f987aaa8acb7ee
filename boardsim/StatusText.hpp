#pragma once

#include <string>

#include "RunningBoard.hpp"

/// How a board is: a line for the board and one for each of its peers. Throws std::runtime_error where it has
/// just ended.
std::string statusText(const RunningBoard& board);
