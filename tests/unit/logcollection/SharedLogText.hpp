#pragma once

#include <string>
#include <vector>

/// Writes entries to the shared-memory log `name`. Returns all the text that the log then holds.
std::string writeSharedLog(const char* name, const std::vector<std::string>& entries);
