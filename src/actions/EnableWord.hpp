#pragma once

#include <optional>
#include <string_view>

namespace Korvel {

/// Returns true for "enable", "e" and "en", false for "disable", "d" and "dis", nothing for any other word.
std::optional<bool> parseEnableWord(std::string_view word);

}  // namespace Korvel
