#pragma once

#include <optional>
#include <string_view>

namespace Korvel {

/// What the switch word of an action says: true for "enable", "e" and "en", false for "disable", "d" and
/// "dis"; nothing for any other word.
std::optional<bool> parseEnableWord(std::string_view word);

}  // namespace Korvel
