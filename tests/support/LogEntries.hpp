#pragma once

#include <string>
#include <vector>

/// The entries of a shared-memory log as "LEVEL TAG: TEXT", without their time stamps. Throws where there is
/// no such log.
std::vector<std::string> logEntries(const char* logName);
