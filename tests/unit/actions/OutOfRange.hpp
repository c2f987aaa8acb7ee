#pragma once

#include <string>
#include <vector>

#include "SimpleAction.hpp"

/// Runs the action with these words, its keyword first. It throws std::out_of_range with this text, and
/// prints nothing.
void expectOutOfRange(Korvel::SimpleAction& action, const std::vector<std::string>& words,
                      const std::string& text);
