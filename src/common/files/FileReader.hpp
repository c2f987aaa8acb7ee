#pragma once

#include <string>

namespace Korvel {

// Readers of small files. A file that cannot be opened is reported on standard error and reads as empty; one
// whose reading breaks off is reported too, and reads as far as it went.

/// Every byte of the file.
std::string readFileToString(const std::string& path);

/// The number of newline characters; a last line without one does not count.
unsigned getNumberOfLinesInFile(const std::string& path);

/// The file from line `line` on, counted from 0; empty where it has no such line.
std::string readFileFromLine(const std::string& path, unsigned line);

}  // namespace Korvel
