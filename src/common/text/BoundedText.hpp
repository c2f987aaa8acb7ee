#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace Korvel {

constexpr std::size_t noSizeLimit = std::numeric_limits<std::size_t>::max();

/// Appends to a text that may have `limit` bytes what it has room for. False where something is left out.
/// `text` must not be larger than the limit.
bool appendWithin(std::size_t limit, std::string& text, std::string_view piece);

}  // namespace Korvel
