#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace Korvel {

constexpr std::size_t noSizeLimit = std::numeric_limits<std::size_t>::max();

/// Appends `piece` to `text`, up to `limit` bytes in total. Returns false if a part was left out. `text` must
/// not exceed the limit.
bool appendWithin(std::size_t limit, std::string& text, std::string_view piece);

}  // namespace Korvel
