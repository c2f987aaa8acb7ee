#pragma once

#include <string>

/// Everything in a file that the user named. Throws UsageError where it cannot be read.
std::string readUserFile(const std::string& path);
