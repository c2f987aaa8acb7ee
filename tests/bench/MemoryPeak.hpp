#pragma once

#include <string>
#include <vector>

/// Runs a command, discards its output and returns its peak of private and file memory (RssAnon + RssFile) in
/// KiB. It samples the memory without pause, so it can miss a very short peak.
long peakMemoryKiB(const std::vector<std::string>& command);
