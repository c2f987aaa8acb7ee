#pragma once

#include <string>

namespace Korvel {

/// Returns the local time as "%y%m%d_%H%M%S", for file and package names.
std::string getTimestamp();

/// Returns the local time as "%y-%m-%d %H:%M:%S", for human readers.
std::string getCurrentDateTime();

}  // namespace Korvel
