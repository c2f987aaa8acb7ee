#pragma once

#include <string>
#include <vector>

#include "SimpleAction.hpp"

/// Runs the action with these words, its keyword first. It must throw std::out_of_range with this text and
/// print nothing.
void expectOutOfRange(Korvel::SimpleAction& action, const std::vector<std::string>& words,
                      const std::string& text);
