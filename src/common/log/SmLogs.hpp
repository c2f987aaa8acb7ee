#pragma once

#include "SmLog.hpp"

namespace Korvel {

// The platform's shared-memory logs, and the parameters to open and read them.

constexpr const char* dispatcherLogName = "dispatcher_log_memory";
constexpr const char* syslibLogName = "syslib_log_memory";

// Only the log library interprets these values.
constexpr AppID smLogApplication = 3;
constexpr unsigned smLogReadMode = 5;

}  // namespace Korvel
