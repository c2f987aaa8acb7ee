#pragma once

#include <string>

namespace Korvel {

/// Local time now as "%y%m%d_%H%M%S", for names of files and packages.
std::string getTimestamp();

/// Local time now as "%y-%m-%d %H:%M:%S", for lines that people read.
std::string getCurrentDateTime();

}  // namespace Korvel
