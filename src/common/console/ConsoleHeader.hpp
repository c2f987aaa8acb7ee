#pragma once

#include <string>

namespace Korvel {

/// Prints the heading of a section of collected output: "### ", the title, a blank, and '#' up to 64
/// characters (three '#' if the title leaves no room). Leaves '#' as the fill character of standard output.
void printLogHeader(const std::string& title);

}  // namespace Korvel
