#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Odometer.hpp"

namespace Report {

/// Chooses a word that can replace a folded name in every text: each digit is replaced by a digit, each
/// letter a to f by one of these, each other letter by another one with the same number of bytes and columns;
/// the rest remains, and a number from 256 to 999 remains one. So the word has the same length, and no text
/// with the word in it becomes an address, such as rack256.1.2.3.
///
/// `isFree` says whether a word may be chosen. The name itself must not be free. Returns no value if none is.
std::optional<std::string> chooseName(std::string_view name, Random& random,
                                      const std::function<bool(std::string_view)>& isFree);

}  // namespace Report
