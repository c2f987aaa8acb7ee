#pragma once

#include <string>

namespace Korvel {

// Functions that read small files. If a file cannot be opened, they report that on standard error, and it
// counts as empty. After a read error, they report it and use the part before it.

/// Returns the whole file.
std::string readFileToString(const std::string& path);

/// Returns the number of newline characters; a last line without a newline does not count.
unsigned getNumberOfLinesInFile(const std::string& path);

/// Returns the file from line `line` on, counted from 0, or an empty string if there is no such line.
std::string readFileFromLine(const std::string& path, unsigned line);

}  // namespace Korvel
