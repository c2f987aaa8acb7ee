#pragma once

#include <string>

#include "SmLog.hpp"

namespace Korvel {

/// Returns the oldest text, at most `size` - 1 bytes, of the shared-memory log `logName` for `app`, or an
/// empty string if the log is not available.
std::string readSmLog(const char* logName, unsigned size, AppID app);

}  // namespace Korvel
