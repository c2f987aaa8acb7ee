#pragma once

#include <chrono>
#include <string>
#include <vector>

/// What a program that lasts costs while it has little to do.
struct IdleCost {
    double processorMsPerRound;
    double memoryMiB;  ///< private and file memory (RssAnon + RssFile)
};

/// Runs a program that does something once every `period`, looks at some rounds after its first one, and ends
/// it. Throws where it ends by itself.
IdleCost measureIdleCost(const std::vector<std::string>& command, std::chrono::seconds period);
