#pragma once

#include <string>

namespace Korvel {

/// The n-th word (n counts from 1) of a text whose words are separated by white space; the last word where
/// there are fewer, and an empty text for n = 0 or a text without words.
std::string getNthTokenFromString(const std::string& text, unsigned n);

}  // namespace Korvel
