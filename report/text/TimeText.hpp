#pragma once

#include <string>

#include "Time.hpp"

namespace Report {

/// "2026-11-22 02:46:41 UTC"; a fraction of a second is left out.
std::string secondsText(Time time);

/// "2026-11-22 02:46:41.000123": in UTC, as in the tables of log entries.
std::string microsecondsText(Time time);

}  // namespace Report
