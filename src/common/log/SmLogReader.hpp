#pragma once

#include <string>

#include "SmLog.hpp"

namespace Korvel {

/// The oldest up to `size` - 1 bytes of text that the shared-memory log `logName` keeps for `app`; empty
/// where the log cannot be had.
std::string readSmLog(const char* logName, unsigned size, AppID app);

}  // namespace Korvel
