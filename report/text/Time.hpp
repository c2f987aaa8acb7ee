#pragma once

#include <chrono>

namespace Report {

/// A point in time, in UTC, with the resolution of the logs.
using Time = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace Report
