#pragma once

#include <string>
#include <vector>

/// Runs a command with its output thrown away and returns the most private and file memory that it had at a
/// time (RssAnon + RssFile), in KiB, as far as looking without pause can tell.
long peakMemoryKiB(const std::vector<std::string>& command);
