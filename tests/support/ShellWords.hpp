#pragma once

#include <string>
#include <vector>

/// One line that a shell splits into these words again.
std::string shellLine(const std::vector<std::string>& words);
