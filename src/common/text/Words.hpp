#pragma once

#include <string>

namespace Korvel {

/// Returns the n-th word (counted from 1) of a text with words separated by white space. If there are fewer
/// words, returns the last one. Returns an empty string for n = 0 or a text without words.
std::string getNthTokenFromString(const std::string& text, unsigned n);

}  // namespace Korvel
