#pragma once

#include <string_view>

namespace Report {

/// Removes the first field of a line, and the blanks around it, and returns it; empty at the end of the line.
std::string_view takeField(std::string_view& line);

/// Whether a byte can stand in the name of a user or of a host, with its domain.
bool isNameByte(char byte);
bool isName(std::string_view text);

}  // namespace Report
