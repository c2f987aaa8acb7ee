#pragma once

#include <string>
#include <vector>

/// The words as one line that a shell splits into the same words again.
std::string shellLine(const std::vector<std::string>& words);
