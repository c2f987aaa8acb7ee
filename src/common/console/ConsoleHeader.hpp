#pragma once

#include <string>

namespace Korvel {

/// Prints the line that heads a section of collected output: "### ", the title, a blank, and '#' up to 64
/// characters (at least three where the title leaves no room).
/// Standard output keeps '#' as its fill character.
void printLogHeader(const std::string& title);

}  // namespace Korvel
