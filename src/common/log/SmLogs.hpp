#pragma once

#include "SmLog.hpp"

namespace Korvel {

// The platform's shared-memory logs, and how they are opened and read.

constexpr const char* dispatcherLogName = "dispatcher_log_memory";
constexpr const char* syslibLogName = "syslib_log_memory";

// Meaningful to the log library alone.
constexpr AppID smLogApplication = 3;
constexpr unsigned smLogReadMode = 5;

}  // namespace Korvel
