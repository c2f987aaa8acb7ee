#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Odometer.hpp"

namespace Report {

/// Chooses a word that can replace a folded name in every text: each digit is replaced by a digit, each
/// letter a to f by one of these, each other letter by another one with the same number of bytes and columns;
/// the rest remains. So the word has the same length, and no part of an address becomes something else.
///
/// `isFree` says whether a word may be chosen. The name itself must not be free. Returns no value if none is.
std::optional<std::string> chooseName(std::string_view name, Random& random,
                                      const std::function<bool(std::string_view)>& isFree);

}  // namespace Report
