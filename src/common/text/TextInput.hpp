#pragma once

#include <sstream>
#include <string>

namespace Korvel {

/// Returns a stream that reads `text`. If memory runs out, reading throws std::bad_alloc; a plain
/// std::istringstream would end there, as if the text did.
std::istringstream inputFrom(std::string text);

}  // namespace Korvel
