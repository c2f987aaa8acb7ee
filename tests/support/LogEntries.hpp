#pragma once

#include <string>
#include <vector>

/// The entries of a shared-memory log as "LEVEL TAG: TEXT", without their time stamps. Throws if the log is
/// missing.
std::vector<std::string> logEntries(const char* logName);
